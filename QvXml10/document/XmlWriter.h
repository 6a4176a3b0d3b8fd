#pragma once

#include "../foundation/QvExport.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "../foundation/CriticalSection.h"
#include "../foundation/QvTypes.h"

namespace QvXmlLib10 {

// The event interface through which objects serialize themselves. The frame keeps
// the stack of open elements and their namespace scopes and invents prefixes for
// namespaces that have no alias; the concrete writers produce the output.
class QVXML_API CXmlWriter : public CInstanceMonitor {
public:
    // Namespace URI to alias.
    using NamespaceMap = std::map<std::string, std::string>;

    static constexpr char XML_NAMESPACE[] = "http://www.w3.org/XML/1998/namespace";

    // One open element. A context either has a namespace scope of its own (default
    // namespace and map) or uses the scope of the nearest ancestor that has one; it
    // takes a private copy of the map only when it declares something itself.
    // The scope in force is found without walking up: m_pNamespaceMap always points at
    // the map in force, inherited or own, and a private link at the context that holds
    // the scope. Only the innermost open context ever gains a scope of its own, so what
    // a context inherits stays in force for its whole life. A reused context keeps the
    // map of its earlier scope and brings it up to date when it needs one again, which
    // costs comparisons instead of a copy.
    class CXmlWriterContext : public CInstanceMonitor {
    public:
        // Child element. Takes over pParent (which is left empty) and shares its scope.
        CXmlWriterContext(const std::string& localName, const std::string& namespaceUri,
                          std::unique_ptr<CXmlWriterContext>&& pParent);
        // Root element: a scope of its own, copied from the given default namespace and
        // map (a null map counts as empty). pParent is normally empty.
        CXmlWriterContext(const std::string& localName, const std::string& namespaceUri,
                          const std::string& defaultNamespace, const NamespaceMap* pNamespaceMap,
                          std::unique_ptr<CXmlWriterContext>&& pParent);
        CXmlWriterContext(const CXmlWriterContext&) = delete;
        CXmlWriterContext& operator=(const CXmlWriterContext&) = delete;
        // Destroys the chain of parents as well.
        ~CXmlWriterContext() override;

        // The effective default namespace and map: those of the nearest context,
        // this one included, that has a scope of its own.
        const std::string& GetDefaultNamespace() const { return m_pScope->m_defaultNamespace; }
        const NamespaceMap& GetNamespaceMap() const { return *m_pNamespaceMap; }

        // Both give this context a scope of its own first if it has none.
        void SetDefaultNamespace(const std::string& namespaceUri);
        void SetNamespaceMapValue(const std::string& namespaceUri, const std::string& alias);

        // The alias in the effective map. A namespace without an entry is entered with an
        // empty alias, so ask only for namespaces known to be there.
        const std::string& GetNamespaceMapValue(const std::string& namespaceUri);
        const std::string& GetNamespaceMapValue(const char* namespaceUri);

        uint64_t m_childCount;
        bool m_startTagOpen;
        uint64_t m_depth;
        std::string m_namespaceUri;
        std::string m_localName;
        std::unique_ptr<CXmlWriterContext> m_pParent;
        bool m_hasAttributes;
        std::string m_defaultNamespace; // in force only while m_inheritsScope is false
        NamespaceMap* m_pNamespaceMap;  // the map in force; owned when m_ownsNamespaceMap is set
        bool m_inheritsScope;
        bool m_ownsNamespaceMap;

    private:
        friend class CXmlWriter;

        // Gives this context a private copy of the inherited map (and, if asked, the
        // inherited default namespace). An entry under pendingUri may be left with any
        // alias, as the caller sets it next.
        void OwnScope(bool copyDefaultNamespace, const std::string* pendingUri);
        // SetNamespaceMapValue, giving the alias as it stands in the map.
        const std::string& SetAlias(const std::string& namespaceUri, const std::string& alias);
        // Makes a context that was popped a child of pParent, as the child constructor
        // would, keeping the capacity of its strings and its map.
        void Reuse(const std::string& localName, const std::string& namespaceUri,
                   std::unique_ptr<CXmlWriterContext>&& pParent);

        CXmlWriterContext* m_pScope;               // the context whose scope is in force
        std::unique_ptr<NamespaceMap> m_pSpareMap; // the map of an earlier scope, for the next one
        // The prefix that the start tag gave the element's name (null for none), while
        // nothing has happened to the scope that could change it.
        const std::string* m_pNamePrefix;
        bool m_namePrefixKnown;
    };

    explicit CXmlWriter(const char* label);
    CXmlWriter(const CXmlWriter&) = delete;
    CXmlWriter& operator=(const CXmlWriter&) = delete;

    ~CXmlWriter() override;
    virtual void Open();
    // Throws if an element is still open.
    virtual void Close();
    virtual void SetDefaultNamespace(const std::string& namespaceUri);
    virtual void AddNamespace(const std::string& alias, const std::string& namespaceUri);
    virtual void WriteComment(const std::string& text) = 0;
    virtual void WritePI(const std::string& text) = 0;
    virtual void WriteInlineSchema(const std::string& schemaText) = 0;
    virtual void WriteStartElement(const std::string& localName, const std::string& namespaceUri) = 0;
    virtual void WriteString(const std::string& text, ItemType type) = 0;
    virtual void WriteEndElement() = 0;
    virtual void WriteAttributeString(const std::string& localName, const std::string& namespaceUri,
                                      const std::string& value, ItemType type) = 0;
    virtual void WriteAttributeType(const std::string& typeNamespaceUri, const std::string& typeName,
                                    ItemType type) = 0;
    virtual void WriteAttributeNil() = 0;

    // Two-letter prefix for n: 0 is "AA", 1 "AB", 26 "BA".
    static std::string NsIntToString(int n);
    // The first of "AA", "AB", ... that is no alias in the given map.
    static std::string GetUniquePrefix(const NamespaceMap& namespaces);

protected:
    // The prefix that the start tag of the context's element was written with, if it is
    // still the one the scope gives: true, with *pPrefix null for none or the alias.
    static bool RecallNamePrefix(const CXmlWriterContext& context, const std::string*& pPrefix) {
        pPrefix = context.m_pNamePrefix;
        return context.m_namePrefixKnown;
    }
    // Records the prefix of the element's name: null for none, else the alias as it
    // stands in the context's map or in that of an ancestor.
    static void RememberNamePrefix(CXmlWriterContext& context, const std::string* pPrefix) {
        context.m_pNamePrefix = pPrefix;
        context.m_namePrefixKnown = true;
    }
    // SetNamespaceMapValue on the context, giving the alias as it now stands in its map.
    static const std::string& SetAlias(CXmlWriterContext& context, const std::string& namespaceUri,
                                       const std::string& alias) {
        return context.SetAlias(namespaceUri, alias);
    }

    // Opens a context for a new element and makes it current: the child form under an
    // open element, otherwise the root form with the default namespace and the map set
    // before the first element. Contexts popped before are reused.
    void PushContext(const std::string& localName, const std::string& namespaceUri);
    // Makes the parent of the current context current; the context is kept for reuse.
    void PopContext() {
        std::unique_ptr<CXmlWriterContext> context = std::move(m_pContext);
        m_pContext = std::move(context->m_pParent);
        context->m_pParent = std::move(m_pSpareContexts);
        m_pSpareContexts = std::move(context);
    }

    std::string m_defaultNamespace;                // set before the first element
    std::unique_ptr<CXmlWriterContext> m_pContext; // innermost open element, or null
    NamespaceMap m_namespaceMap;                   // aliases set before the first element

private:
    // Contexts of closed elements, linked through m_pParent, so that writing an element
    // allocates nothing once the document has been as deep before.
    std::unique_ptr<CXmlWriterContext> m_pSpareContexts;
};

} // namespace QvXmlLib10
