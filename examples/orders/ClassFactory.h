#pragma once

// The class factory of the schema: creates objects by class number for the metadata of
// optional children, and the concrete payment class named by an element's xsi:type.

#include <QvXml10/binding/ClassfactoryBase.h>
#include <QvXml10/binding/SmartPtr.h>
#include <QvXml10/binding/XmlObjectBase.h>

namespace PurchaseOrders {

class CClassFactory : public QvXmlLib10::CClassfactoryBase {
public:
    enum ClassId {
        ClassId_Contact = 1,
        ClassId_BusinessDocument = 2,
        ClassId_Customer = 3,
        ClassId_Address = 4,
        ClassId_Line = 5,
        ClassId_CardPayment = 6,
        ClassId_InvoicePayment = 7,
        ClassId_PurchaseOrderChoice = 8,
        ClassId_PurchaseOrder = 9
    };

    // A new object of the class, under the element name; null for an unknown number.
    static QvXmlLib10::CSmartPtr<QvXmlLib10::CXmlObjectBase> CreateObject(int classId, const char* elementName);
    // The payment class that the element's xsi:type names (CardPayment or
    // InvoicePayment of this schema's namespace), under the element's name; null for
    // any other type, and for none, since Payment itself is abstract.
    static QvXmlLib10::CSmartPtr<QvXmlLib10::CXmlObjectBase> CreatePayment(QvXmlLib10::CXmlElement* element);
};

} // namespace PurchaseOrders
