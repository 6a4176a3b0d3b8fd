#include "BenchSupport.h"

#include <map>

namespace QvXmlBench {

const std::string& OrderDocument(size_t bytes) {
    static std::map<size_t, std::string> documents;
    std::string& text = documents[bytes];
    if (!text.empty()) return text;
    text.reserve(bytes + 4096);
    text += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<ord:orders xmlns:ord=\"urn:example:orders\" xmlns=\"urn:example:orders:lines\">\n";
    for (size_t n = 0; text.size() < bytes; ++n) {
        const std::string id = std::to_string(n);
        text += "  <ord:order id=\"O-" + id +
                "\" date=\"2026-11-21\" status=\"open\">\n"
                "    <ord:customer><ord:name>Customer number " +
                id +
                "</ord:name>"
                "<ord:email>customer" +
                id + "@example.com</ord:email></ord:customer>\n";
        for (int line = 0; line < 3; ++line) {
            text += "    <line sku=\"SKU-" + std::to_string(n * 3 + line) + "\" quantity=\"" +
                    std::to_string(line + 1) +
                    "\" price=\"12.50\">Item description with a few words &amp; "
                    "an entity, line " +
                    std::to_string(line) + "</line>\n";
        }
        text += "    <ord:note>Deliver to the back door between 9 and 17 o'clock.</ord:note>\n"
                "  </ord:order>\n";
    }
    text += "</ord:orders>\n";
    return text;
}

} // namespace QvXmlBench
