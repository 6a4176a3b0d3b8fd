// Text input reaches the parser in pieces: what falls on a boundary between two pieces
// is read as if the input had come whole.

#include "document/XmlDocument.h"
#include "foundation/QvException.h"
#include "internal/Limits.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>

using namespace QvXmlLib10;

namespace {

const size_t kPiece = Internal::kParsePieceSize;

// "<r>" and filler text up to `offset`, then `tail`; the filler ends with lines so that
// line numbers are counted across the boundary.
std::string PlacedAt(size_t offset, const std::string& tail) {
    std::string xml = "<r>";
    xml += std::string(offset - xml.size() - 2, 'x');
    xml += "\n\n";
    return xml + tail;
}

std::string LoadFailure(CXmlDocument& document, const std::string& xml) {
    try {
        document.LoadXmlStream(reinterpret_cast<unsigned char*>(const_cast<char*>(xml.data())),
                               static_cast<unsigned long>(xml.size()));
    } catch (const CQvException& e) {
        return e.GetFullMessage();
    }
    return "no exception";
}

bool StopAtStop(CXmlElement* element) {
    if (element->GetLocalName() == "stop") throw CQvException("stopped by the hook");
    return false;
}

} // namespace

// Texts in UTF-8 under a UTF-8 locale (C.UTF-8), so that they stay as they are.
TEST(PieceBoundary, CharactersAndReferencesAcrossABoundaryAreWhole) {
    const char* previous = std::setlocale(LC_ALL, "C.UTF-8");
    ASSERT_NE(previous, nullptr);
    struct Case {
        size_t before; // bytes of the tail that fall into the first piece
        const char* tail;
        const char* text;
    } cases[] = {
        {1, "\xC3\xA9</r>", "\xC3\xA9"},         // two-byte character split after its first byte
        {2, "\xE2\x82\xAC</r>", "\xE2\x82\xAC"}, // three-byte character split after two
        {3, "&amp;</r>", "&"},                   // entity reference split inside
        {4, "&#13;z</r>", "z"},                  // character reference split inside
        {2, "<b a='1'/>y</r>", "y"},             // tag split inside its name
    };
    for (const Case& c : cases) {
        const std::string xml = PlacedAt(kPiece - c.before, c.tail);
        CXmlDocument document;
        document.LoadXmlStream(reinterpret_cast<unsigned char*>(const_cast<char*>(xml.data())),
                               static_cast<unsigned long>(xml.size()));
        const std::string text = document.GetDocumentElement()->GetText();
        EXPECT_EQ(text.substr(text.size() - std::string(c.text).size()), c.text) << c.tail;
        EXPECT_EQ(text.size(), kPiece - c.before - 3 + std::string(c.text).size()) << c.tail;
    }
    std::setlocale(LC_ALL, "C");
}

TEST(PieceBoundary, FailuresOnABoundaryKeepTheirMessageAndLine) {
    CXmlDocument document;
    // The mismatched end tag starts in the first piece and ends in the second.
    EXPECT_EQ(LoadFailure(document, PlacedAt(kPiece - 2, "</q>")), "mismatched tag at line 3");
    // A bad character as the first byte of the second piece.
    EXPECT_EQ(LoadFailure(document, PlacedAt(kPiece, "<\x01/r>")), "not well-formed (invalid token) at line 3");
    // A document that ends at the boundary without closing its root.
    EXPECT_EQ(LoadFailure(document, PlacedAt(kPiece, "")), "no element found at line 3");
    EXPECT_EQ(document.GetDocumentElement()->GetText().size(), kPiece - 3);
}

// A handler that throws in a later piece stops the load with its own exception and
// leaves the elements read so far, with their text.
TEST(PieceBoundary, ExceptionFromALaterPiecePassesThroughUnchanged) {
    CXmlDocument document(&StopAtStop);
    EXPECT_EQ(LoadFailure(document, PlacedAt(kPiece + 10, "<stop/></r>")), "stopped by the hook");
    EXPECT_EQ(document.GetDocumentElement()->GetText().size(), kPiece + 7);
    EXPECT_EQ(document.GetDocumentElement()->GetFirstElement()->GetLocalName(), "stop");
}
