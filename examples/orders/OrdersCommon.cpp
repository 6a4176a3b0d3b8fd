#include "OrdersCommon.h"

#include <cstring>

#include <QvXml10/foundation/QvException.h>

using namespace QvXmlLib10;
using namespace QvXmlLib10Data;

namespace PurchaseOrders {

const char* const TARGET_NAMESPACE = "urn:example:purchase-orders";

namespace {

const char* const ORDER_STATUS_TEXTS[] = {"open", "confirmed", "shipped", "cancelled"};
constexpr int ORDER_STATUS_COUNT = sizeof(ORDER_STATUS_TEXTS) / sizeof(ORDER_STATUS_TEXTS[0]);

} // namespace

const char* OrderStatusToText(int value) {
    if (value < 0 || value >= ORDER_STATUS_COUNT)
        throw CQvInvalidValueException(FormatString("Invalid value %d for the enumeration OrderStatus", value));
    return ORDER_STATUS_TEXTS[value];
}

int TextToOrderStatus(const char* text) {
    for (int value = 0; value < ORDER_STATUS_COUNT; ++value)
        if (std::strcmp(text, ORDER_STATUS_TEXTS[value]) == 0) return value;
    throw CQvInvalidValueException(FormatString("Invalid value [%s] for the enumeration OrderStatus", text));
}

void ThrowNoValue(const char* className, const char* propertyName) {
    throw CQvInvalidStateException(FormatString("The Property [%s] of %s has no value", propertyName, className));
}

void ThrowNoProperty(const char* className, int propertyIndex) {
    throw CQvInvalidParamException(FormatString("%s has no property %d", className, propertyIndex));
}

void CClassTables::Build(BuildFunction build) {
    CXmlGeneratedClass::m_csInit.Enter();
    try {
        if (!m_built.load(std::memory_order_relaxed)) {
            build(m_pParent, m_pElements, m_pAttributes);
            m_built.store(true, std::memory_order_release);
        }
    } catch (...) {
        CXmlGeneratedClass::CleanMetaData(m_pParent, m_pElements, m_pAttributes);
        CXmlGeneratedClass::m_csInit.Leave();
        throw;
    }
    CXmlGeneratedClass::m_csInit.Leave();
}

void CClassTables::Clean() {
    CXmlGeneratedClass::m_csInit.Enter();
    m_built.store(false, std::memory_order_release);
    CXmlGeneratedClass::CleanMetaData(m_pParent, m_pElements, m_pAttributes);
    CXmlGeneratedClass::m_csInit.Leave();
}

} // namespace PurchaseOrders
