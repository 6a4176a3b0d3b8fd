#pragma once

#include "../foundation/QvExport.h"

#include "SmartPtr.h"
#include "../document/NamespaceAliasMap.h"
#include "../fastinfoset/FastInfosetContext.h"
#include "../foundation/QvTypes.h"

#include <string>
#include <vector>

namespace QvXmlLib10 {

class CAttributeCol;

// The settings of one conversion. Travels by const reference through every reading
// and writing call; decides nothing itself except that two ignore settings exclude
// each other.
class QVXML_API CXmlSerializationContext {
public:
    CXmlSerializationContext();
    CXmlSerializationContext(const CXmlSerializationContext& other);
    virtual ~CXmlSerializationContext();

    // Shared default, used by callers without settings of their own. Not const:
    // changing it changes every conversion that uses it.
    static CXmlSerializationContext m_defaultContext;

    bool GetIgnoreUnknownAttributes() const { return m_ignoreUnknownAttributes; }
    void SetIgnoreUnknownAttributes(bool value) { m_ignoreUnknownAttributes = value; }

    bool GetIgnoreUnknownElements() const { return m_ignoreUnknownElements; }
    // Throws CQvInvalidStateException when missing mandatory elements are ignored already.
    void SetIgnoreUnknownElements(bool value);

    bool GetIgnoreMissingMandatoryElements() const { return m_ignoreMissingMandatoryElements; }
    // Throws CQvInvalidStateException when unknown elements are ignored already.
    void SetIgnoreMissingMandatoryElements(bool value);

    bool GetIgnoreMissingChoice() const { return m_ignoreMissingChoice; }
    void SetIgnoreMissingChoice(bool value) { m_ignoreMissingChoice = value; }

    bool GetIgnoreInvalidCollectionCounts() const { return m_ignoreInvalidCollectionCounts; }
    void SetIgnoreInvalidCollectionCounts(bool value) { m_ignoreInvalidCollectionCounts = value; }

    // True when the flag is set or the schema type switches namespaces off.
    bool GetIgnoreNamespaces() const { return m_ignoreNamespaces || m_schemaType == SchemaType_NoNamespaces; }
    void SetIgnoreNamespaces(bool value) { m_ignoreNamespaces = value; }

    bool GetNoOptionalAttributeDefaultOutput() const { return m_noOptionalAttributeDefaultOutput; }
    void SetNoOptionalAttributeDefaultOutput(bool value) { m_noOptionalAttributeDefaultOutput = value; }

    bool GetWriteTypeAttribute() const { return m_writeTypeAttribute; }
    void SetWriteTypeAttribute(bool value) { m_writeTypeAttribute = value; }

    SchemaType GetSchemaType() const { return m_schemaType; }
    void SetSchemaType(SchemaType value) { m_schemaType = value; }

    bool GetStripCDATA() const { return m_stripCDATA; }
    void SetStripCDATA(bool value) { m_stripCDATA = value; }

    std::string GetInLineSchema() const { return m_inLineSchema; }
    void SetInLineSchema(const char* value) { m_inLineSchema = value ? value : ""; }

    std::string GetDefaultNamespaceURI() const { return m_defaultNamespaceUri; }
    void SetDefaultNamespaceURI(const char* value) { m_defaultNamespaceUri = value ? value : ""; }

    // Prefixes declared on the root element; callers add to the map directly.
    CNamespaceAliasMap& GetNamespaceAliases() { return m_namespaceAliasMap; }
    const CNamespaceAliasMap& GetNamespaceAliases() const { return m_namespaceAliasMap; }

    // Extra attributes written on the root element. Built empty on first demand, even
    // though the operation is const; a copy of the context shares the collection.
    CSmartPtr<CAttributeCol> GetAdditionalRootAttributes() const;

    // Processing instructions written ahead of the root element; callers append directly.
    std::vector<std::string>& GetProcessingInstructions() { return m_processingInstructions; }
    const std::vector<std::string>& GetProcessingInstructions() const { return m_processingInstructions; }

    // Options of Fast Infoset writing and reading.
    CFastInfosetContext& GetFIContext() { return m_fiContext; }
    const CFastInfosetContext& GetFIContext() const { return m_fiContext; }

private:
    std::string m_defaultNamespaceUri;
    bool m_writeTypeAttribute;
    CNamespaceAliasMap m_namespaceAliasMap;
    mutable CSmartPtr<CAttributeCol> m_additionalRootAttributes;
    std::vector<std::string> m_processingInstructions;
    std::string m_inLineSchema;
    bool m_ignoreInvalidCollectionCounts;
    bool m_ignoreMissingChoice;
    bool m_ignoreMissingMandatoryElements;
    bool m_ignoreUnknownElements;
    bool m_ignoreUnknownAttributes;
    bool m_ignoreNamespaces;
    SchemaType m_schemaType;
    bool m_noOptionalAttributeDefaultOutput;
    CFastInfosetContext m_fiContext;
    bool m_stripCDATA;
};

} // namespace QvXmlLib10
