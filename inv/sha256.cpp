#include "inv/sha256.h"

namespace inv {
namespace {

constexpr size_t kBlock = 64;

constexpr uint32_t kRounds[64] = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

uint32_t rotate(uint32_t word, unsigned bits) { return word >> bits | word << (32 - bits); }

void mix_block(const unsigned char* block, uint32_t (&state)[8]) {
  uint32_t words[64];
  for (size_t i = 0; i < 16; ++i) {
    words[i] = uint32_t{block[4 * i]} << 24 | uint32_t{block[4 * i + 1]} << 16 |
               uint32_t{block[4 * i + 2]} << 8 | uint32_t{block[4 * i + 3]};
  }
  for (size_t i = 16; i < 64; ++i) {
    const uint32_t a = words[i - 15];
    const uint32_t b = words[i - 2];
    words[i] = words[i - 16] + (rotate(a, 7) ^ rotate(a, 18) ^ a >> 3) + words[i - 7] +
               (rotate(b, 17) ^ rotate(b, 19) ^ b >> 10);
  }
  auto [a, b, c, d, e, f, g, h] = state;
  for (size_t i = 0; i < 64; ++i) {
    const uint32_t first =
        h + (rotate(e, 6) ^ rotate(e, 11) ^ rotate(e, 25)) + ((e & f) ^ (~e & g)) + kRounds[i] + words[i];
    const uint32_t second = (rotate(a, 2) ^ rotate(a, 13) ^ rotate(a, 22)) + ((a & b) ^ (a & c) ^ (b & c));
    h = g;
    g = f;
    f = e;
    e = d + first;
    d = c;
    c = b;
    b = a;
    a = first + second;
  }
  const uint32_t mixed[8] = {a, b, c, d, e, f, g, h};
  for (size_t i = 0; i < 8; ++i) state[i] += mixed[i];
}

}  // namespace

Digest sha256(std::string_view bytes) {
  uint32_t state[8] = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                       0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
  const auto data = reinterpret_cast<const unsigned char*>(bytes.data());
  size_t at = 0;
  for (; bytes.size() - at >= kBlock; at += kBlock) mix_block(data + at, state);

  // The rest, a bit 1, zeros, and the length in bits as the last eight bytes.
  std::string tail(bytes.substr(at));
  tail += '\x80';
  while (tail.size() % kBlock != kBlock - 8) tail += '\0';
  const uint64_t bits = uint64_t{bytes.size()} * 8;
  for (unsigned i = 0; i < 8; ++i) tail += static_cast<char>(bits >> (56 - 8 * i) & 0xFF);
  const auto last = reinterpret_cast<const unsigned char*>(tail.data());
  for (size_t i = 0; i < tail.size(); i += kBlock) mix_block(last + i, state);

  Digest digest;
  for (size_t i = 0; i < digest.size(); ++i) {
    digest[i] = static_cast<unsigned char>(state[i / 4] >> (24 - 8 * (i % 4)) & 0xFF);
  }
  return digest;
}

Digest hmac_sha256(std::string_view key, std::string_view message) {
  std::string block(key);
  if (block.size() > kBlock) {
    const Digest short_key = sha256(key);
    block.assign(short_key.begin(), short_key.end());
  }
  block.resize(kBlock, '\0');
  std::string inner = block;
  std::string outer = block;
  for (char& byte : inner) byte = static_cast<char>(byte ^ 0x36);
  for (char& byte : outer) byte = static_cast<char>(byte ^ 0x5C);
  const Digest inside = sha256(inner.append(message));
  return sha256(outer.append(inside.begin(), inside.end()));
}

std::string base64(const Digest& digest) {
  constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (size_t i = 0; i < digest.size(); i += 3) {
    uint32_t group = 0;
    for (size_t j = i; j < i + 3; ++j) group = group << 8 | (j < digest.size() ? digest[j] : 0u);
    for (unsigned j = 0; j < 4; ++j) text += kAlphabet[group >> (18 - 6 * j) & 63];
  }
  // 32 bytes leave two for the last group.
  text.back() = '=';
  return text;
}

}  // namespace inv
