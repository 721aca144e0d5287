#include "formats/common/xml_text.h"

#include "core/text/charset.h"

namespace skyhaul {

namespace {

void AppendCharacter(std::string& xml, char c) {
  switch (c) {
    case '&':
      xml += "&amp;";
      return;
    case '<':
      xml += "&lt;";
      return;
    case '>':
      // Needed in "]]>" only, and harmless elsewhere.
      xml += "&gt;";
      return;
    case '"':
      // For texts inside an attribute.
      xml += "&quot;";
      return;
    default: {
      // XML 1.0 has no way to write these, not even as a number. Bytes of a longer UTF-8 character
      // may be negative here and pass.
      const bool is_forbidden = c >= 0 && c < ' ' && c != '\t' && c != '\n' && c != '\r';
      xml += is_forbidden ? ' ' : c;
    }
  }
}

}  // namespace

void AppendXmlText(std::string& xml, std::string_view text) {
  const std::string utf8 = ToUtf8(text);
  for (size_t i = 0; i < utf8.size(); ++i) {
    // U+FFFE and U+FFFF are valid UTF-8 that XML does not allow, three bytes each.
    const std::string_view character = std::string_view(utf8).substr(i, 3);
    if (character == "\xEF\xBF\xBE" || character == "\xEF\xBF\xBF") {
      xml += '?';
      i += 2;
    } else {
      AppendCharacter(xml, utf8[i]);
    }
  }
}

void AppendXmlElement(std::string& xml, std::string_view name, std::string_view text) {
  xml.append("<").append(name).append(">");
  AppendXmlText(xml, text);
  xml.append("</").append(name).append(">\n");
}

}  // namespace skyhaul
