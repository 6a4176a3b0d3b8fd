#pragma once

// Umbrella header: includes every public header of libQvXml10.

#include "foundation/QvTypes.h"
#include "foundation/QvException.h"
#include "foundation/CriticalSection.h"
