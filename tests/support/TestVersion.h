#pragma once

#include "binding/XmlObjectBase.h"

// Test programs declare the matching generator version before any object exists,
// as generated code does.
namespace QvXmlTest {
inline const bool g_generatorVersionSet = (QvXmlLib10::SetGeneratorVersion(10, 1), true);
}
