#include "inv/report/html.h"

#include "inv/base/utf8.h"

namespace inv {

std::string escaped(std::string_view text) {
  std::string result;
  for (const char character : to_utf8(text)) {
    const auto code = static_cast<unsigned char>(character);
    switch (character) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      case '"':
        result += "&quot;";
        break;
      case '\'':
        result += "&#39;";
        break;
      case '\r':
        result += '\n';
        break;
      default:
        if (code < 0x20 || code == 0x7F) {
          result += kReplacement;
        } else {
          result += character;
        }
    }
  }
  return result;
}

std::string isolated(std::string_view text) { return text.empty() ? "" : "<bdi>" + escaped(text) + "</bdi>"; }

}  // namespace inv
