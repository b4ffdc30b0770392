// The unavoidable work of a scan, on the same bytes: one pass of an XML parser over the profiler's document,
// and one zlib stream at level 9 per text. Prints the nanoseconds of processor time of both together.
//
//     floor DOCUMENT TEXT...
#include <expat.h>
#include <zlib.h>

#include <cstdio>
#include <ctime>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

std::string read_file(const char* path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

bool parse(const std::string& document) {
  XML_Parser parser = XML_ParserCreate(nullptr);
  const bool parsed =
      XML_Parse(parser, document.data(), static_cast<int>(document.size()), 1) == XML_STATUS_OK;
  XML_ParserFree(parser);
  return parsed;
}

bool deflate_whole(const std::string& text, std::vector<Bytef>& output) {
  uLongf length = output.size();
  return compress2(output.data(), &length, reinterpret_cast<const Bytef*>(text.data()), text.size(),
                   Z_BEST_COMPRESSION) == Z_OK;
}

long long nanoseconds() {
  timespec now;
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return now.tv_sec * 1000000000LL + now.tv_nsec;
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 3) return 64;
  const std::string document = read_file(arguments[1]);
  std::vector<std::string> texts;
  for (int i = 2; i < count; ++i) texts.push_back(read_file(arguments[i]));

  const long long start = nanoseconds();
  bool done = parse(document);
  for (const std::string& text : texts) {
    std::vector<Bytef> output(compressBound(text.size()));
    done = done && deflate_whole(text, output);
  }
  std::printf("%lld\n", nanoseconds() - start);
  return done ? 0 : 1;
}
