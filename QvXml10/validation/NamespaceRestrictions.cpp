#include "validation/XmlObjectHelper.h"

#include "binding/XmlSerializationContext.h"
#include "document/XmlDocument.h"
#include "foundation/QvException.h"

#include <string_view>

namespace QvXmlLib10 {

namespace {

// The verdict of one token of a restriction list.
bool IsTokenValid(std::string_view token, const std::string& namespaceUri, const std::string& restrictions,
                  const std::string& targetNamespace) {
    if (token == "##any") return true;
    if (token == "##other") return namespaceUri != targetNamespace;
    if (token == "##local") return namespaceUri.empty();
    if (token == "##targetNamespace") return namespaceUri == targetNamespace;
    // A literal token is not compared by itself: the whole list is.
    return namespaceUri == restrictions || namespaceUri.empty();
}

} // namespace

bool CXmlObjectHelper::IsNamespaceValid(const std::string& namespaceUri, const std::string& restrictions,
                                        const std::string& targetNamespace) {
    const std::string::size_type blank = restrictions.find(' ');
    if (blank == std::string::npos) return IsTokenValid(restrictions, namespaceUri, restrictions, targetNamespace);

    // The scan keeps only the blank behind the first token, so every later token is
    // the empty one. It gives the same verdict each time: once is enough, and a list
    // that it does not accept is refused.
    if (IsTokenValid(std::string_view(restrictions).substr(0, blank), namespaceUri, restrictions, targetNamespace))
        return true;
    return IsTokenValid(std::string_view(), namespaceUri, restrictions, targetNamespace);
}

void CXmlObjectHelper::TestNamespace(const std::string& namespaceUri, const std::string& restrictions,
                                     const std::string& targetNamespace) {
    if (!IsNamespaceValid(namespaceUri, restrictions, targetNamespace)) {
        throw CQvInvalidNamespaceException(
            FormatString("Invalid namespace [%s]. The namespace must be one of [%s] where the target namespace is [%s]",
                         namespaceUri.c_str(), restrictions.c_str(), targetNamespace.c_str()));
    }
}

bool CXmlObjectHelper::DoesElementNameMatch(const CXmlSerializationContext& context, const CXmlElement* element,
                                            const std::string& localName, const std::string& namespaceUri) {
    if (element == nullptr) return false;
    if (element->GetLocalName() != localName) return false;
    // Without namespaces (schema type or setting) the local name decides alone.
    if (context.GetIgnoreNamespaces()) return true;
    return element->GetNamespaceURI() == namespaceUri;
}

} // namespace QvXmlLib10
