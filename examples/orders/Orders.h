#pragma once

// Purchase orders (urn:example:purchase-orders, orders.xsd): every class of the schema.
// The document root is CPurchaseOrder. Call CleanOrdersMetaData at the end of the program.

#include "Address.h"
#include "BusinessDocument.h"
#include "ClassFactory.h"
#include "Contact.h"
#include "Customer.h"
#include "Line.h"
#include "OrdersCommon.h"
#include "Payment.h"
#include "PurchaseOrder.h"
