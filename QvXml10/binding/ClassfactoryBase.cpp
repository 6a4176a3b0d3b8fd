#include "binding/ClassfactoryBase.h"

#include "document/XmlDocument.h"
#include "internal/Constants.h"

namespace QvXmlLib10 {

namespace {

// The value of the element's first xsi:type attribute, null when there is none.
const std::string* TypeAttribute(const CXmlElement* element) {
    for (const auto& attribute : element->GetAttributes()) {
        if (attribute->GetLocalName() == "type" && attribute->GetNamespaceURI() == Internal::kXsiNamespace)
            return &attribute->GetValue();
    }
    return nullptr;
}

} // namespace

CClassfactoryBase::CClassfactoryBase() {}

CClassfactoryBase::~CClassfactoryBase() {}

std::string CClassfactoryBase::GetElementType(CXmlElement* element) {
    const std::string* const type = element != nullptr ? TypeAttribute(element) : nullptr;
    if (type == nullptr) return std::string();
    const std::string::size_type colon = type->find(':');
    return colon == std::string::npos ? *type : type->substr(colon + 1);
}

std::string CClassfactoryBase::GetElementTypeNamespaceUri(CXmlElement* element) {
    if (element == nullptr) return std::string();
    const std::string* const type = TypeAttribute(element);
    const std::string::size_type colon = type != nullptr ? type->find(':') : std::string::npos;
    if (colon == std::string::npos) return element->GetNamespaceURI();

    // The document's alias map is flat: the prefix's last declaration anywhere counts.
    if (const CXmlDocument* const document = element->GetOwnerDocument()) {
        std::string namespaceUri = document->LookupNamespaceFromAlias(type->substr(0, colon).c_str());
        if (!namespaceUri.empty()) return namespaceUri;
    }
    return element->GetNamespaceURI();
}

} // namespace QvXmlLib10
