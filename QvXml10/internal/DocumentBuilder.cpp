#include "internal/DocumentBuilder.h"

#include "foundation/QvException.h"
#include "internal/Text.h"

#include <algorithm>

namespace QvXmlLib10 {
namespace Internal {

namespace {
const size_t kInitialTextCapacity = 4096;
// Bytes below this one include the carriage return and the NUL. Expat hands over line
// ends as pieces of their own, so a long piece holds such a byte only with a tab or a
// control character, and then takes the exact path.
constexpr unsigned char kBelowLineEnd = 0x0E;
} // namespace

CDocumentBuilder::CDocumentBuilder(CXmlDocument& document, Hook hook)
    : m_document(document), m_callHook(hook == Hook::Call), m_finished(false), m_lineSource(nullptr),
      m_lineReader(nullptr), m_pText(new char[kInitialTextCapacity]), m_textSize(0),
      m_textCapacity(kInitialTextCapacity) {
    m_textMarks.reserve(64);
}

CDocumentBuilder::~CDocumentBuilder() { Fail(); }

// Out of line, so that the short pieces take a path without its register saves.
[[gnu::noinline]] bool CDocumentBuilder::CopyPlainLong(char* out, const char* text, size_t length, uint64_t highBits) {
    uint64_t odd = 0;
    for (size_t i = 0; i + 8 < length; i += 8) {
        const uint64_t word = Load64(text + i);
        odd |= (word & highBits) | BytesBelow(word, kBelowLineEnd);
        std::memcpy(out + i, &word, 8);
    }
    const uint64_t last = Load64(text + length - 8);
    std::memcpy(out + length - 8, &last, 8);
    return (odd | (last & highBits) | BytesBelow(last, kBelowLineEnd)) == 0;
}

void CDocumentBuilder::ThrowTooDeep() const { ThrowNestingTooDeep(m_lineSource ? m_lineSource(m_lineReader) : 0); }

CXmlElement* CDocumentBuilder::StartElement(const Name* name) {
    std::vector<CXmlElement*>& stack = m_document.m_elementStack;
    if (stack.size() >= kMaxNestingDepth) ThrowTooDeep();
    // Text outside the document element never reaches the tree.
    if (stack.empty()) m_textSize = 0;
    CXmlElement* element = m_document.AddElement_Int(name);
    m_textMarks.push_back(m_textSize);
    return element;
}

void CDocumentBuilder::ReserveAttributes(size_t count) {
    std::vector<CXmlElement*>& stack = m_document.m_elementStack;
    if (!stack.empty()) stack.back()->m_attributes.reserve(stack.back()->m_attributes.size() + count);
}

void CDocumentBuilder::AddAttribute(const Name* name, const char* value, size_t valueLength) {
    std::vector<CXmlElement*>& stack = m_document.m_elementStack;
    if (stack.empty()) throw CQvException("The document has no open element to add an attribute to");
    CXmlElement* element = stack.back();
    std::vector<std::unique_ptr<CXmlAttribute>>& attributes = element->m_attributes;
    if (attributes.size() == attributes.capacity()) attributes.reserve(std::max<size_t>(4, 2 * attributes.size()));
    element->NewAttribute(name, value, valueLength);
}

void CDocumentBuilder::DeclareNamespace(std::string prefix, std::string namespaceUri) {
    m_document.m_namespaceAliases[std::move(prefix)] = std::move(namespaceUri);
}

void CDocumentBuilder::GrowText(size_t length) {
    const size_t capacity = std::max({2 * m_textCapacity, m_textSize + length, kInitialTextCapacity});
    std::unique_ptr<char[]> text(new char[capacity]);
    if (m_textSize) std::memcpy(text.get(), m_pText.get(), m_textSize);
    m_pText.swap(text);
    m_textCapacity = capacity;
}

void CDocumentBuilder::AppendRun(const char* text, size_t length) {
    if (length == 0) return;
    if (m_textCapacity - m_textSize < length) GrowText(length);
    std::memcpy(m_pText.get() + m_textSize, text, length);
    m_textSize += length;
}

void CDocumentBuilder::AppendText(const char* text, size_t length) {
    if (m_textMarks.empty()) return;
    ForEachRunWithoutCR(text, length, [this](const char* run, size_t runLength) { AppendRun(run, runLength); });
}

void CDocumentBuilder::FlushText(CXmlElement* element, size_t begin, size_t end) {
    if (begin >= end) return;
    const char* text = m_pText.get() + begin;
    const size_t length = end - begin;
    std::string& target = element->m_text;
    if (target.empty()) {
        // A new string is allocated at the exact size, where assigning would round it up.
        if (length <= target.capacity())
            target.assign(text, length);
        else
            target = std::string(text, length);
    } else
        element->AppendText(text, static_cast<int>(length));
}

void CDocumentBuilder::EndElement() {
    std::vector<CXmlElement*>& stack = m_document.m_elementStack;
    if (stack.empty()) return;
    if (!m_textMarks.empty()) {
        const size_t mark = m_textMarks.back();
        FlushText(stack.back(), mark, m_textSize);
        m_textSize = mark;
        m_textMarks.pop_back();
    }
    if (m_callHook && m_document.m_pElementHook)
        m_document.EndElement();
    else
        stack.pop_back();
}

void CDocumentBuilder::EndDocument() {
    FlushAll();
    m_finished = true;
}

void CDocumentBuilder::FlushAll() noexcept {
    const std::vector<CXmlElement*>& open = m_document.m_elementStack;
    const size_t count = std::min(open.size(), m_textMarks.size());
    try {
        for (size_t depth = 0; depth < count; ++depth) {
            const size_t end = depth + 1 < m_textMarks.size() ? m_textMarks[depth + 1] : m_textSize;
            FlushText(open[depth], m_textMarks[depth], end);
        }
    } catch (...) {
        // Out of memory while giving back the text of a failed load: the elements keep
        // what they have, and the load's own failure is the one reported.
    }
    m_textMarks.clear();
    m_textSize = 0;
}

void CDocumentBuilder::Fail() noexcept {
    if (m_finished) return;
    FlushAll();
    m_finished = true;
}

} // namespace Internal
} // namespace QvXmlLib10
