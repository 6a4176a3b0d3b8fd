#include "ClassFactory.h"

#include "Orders.h"
#include <QvXml10/document/XmlDocument.h>

using namespace QvXmlLib10;

namespace PurchaseOrders {

namespace {

// The generated code declares the generator's version before any of its objects exists.
struct CGeneratorVersion {
    CGeneratorVersion() { SetGeneratorVersion(10, 1); }
};
const CGeneratorVersion g_generatorVersion;

} // namespace

CSmartPtr<CXmlObjectBase> CClassFactory::CreateObject(int classId, const char* elementName) {
    CSmartPtr<CXmlObjectBase> object;
    switch (classId) {
    case ClassId_Contact:
        object = new CContact();
        break;
    case ClassId_BusinessDocument:
        object = new CBusinessDocument();
        break;
    case ClassId_Customer:
        object = new CCustomer();
        break;
    case ClassId_Address:
        object = new CAddress();
        break;
    case ClassId_Line:
        object = new CLine();
        break;
    case ClassId_CardPayment:
        object = new CCardPayment();
        break;
    case ClassId_InvoicePayment:
        object = new CInvoicePayment();
        break;
    case ClassId_PurchaseOrderChoice:
        object = new CPurchaseOrderChoice();
        break;
    case ClassId_PurchaseOrder:
        object = new CPurchaseOrder();
        break;
    default:
        return object;
    }
    object->SetElementName(elementName);
    return object;
}

CSmartPtr<CXmlObjectBase> CClassFactory::CreatePayment(CXmlElement* element) {
    if (GetElementTypeNamespaceUri(element) != TARGET_NAMESPACE) return CSmartPtr<CXmlObjectBase>();
    const std::string type = GetElementType(element);
    int classId = 0;
    if (type == "CardPayment")
        classId = ClassId_CardPayment;
    else if (type == "InvoicePayment")
        classId = ClassId_InvoicePayment;
    else
        return CSmartPtr<CXmlObjectBase>();
    return CreateObject(classId, element->GetLocalName().c_str());
}

void CleanOrdersMetaData() {
    CContact::CleanMetaData();
    CBusinessDocument::CleanMetaData();
    CCustomer::CleanMetaData();
    CAddress::CleanMetaData();
    CLine::CleanMetaData();
    CCardPayment::CleanMetaData();
    CInvoicePayment::CleanMetaData();
    CPurchaseOrderChoice::CleanMetaData();
    CPurchaseOrder::CleanMetaData();
}

} // namespace PurchaseOrders
