#pragma once

// Umbrella header: includes every public header of libQvXml10.

#include "foundation/QvExport.h"
#include "foundation/QvTypes.h"
#include "foundation/QvException.h"
#include "foundation/CriticalSection.h"
#include "foundation/Encoder.h"
#include "foundation/BinaryData.h"
#include "foundation/Base64.h"
#include "foundation/Streams.h"
#include "foundation/Utilities.h"

#include "document/NamespaceAliasMap.h"
#include "document/XmlDocument.h"
#include "document/ExpatReader.h"
#include "document/XmlWriter.h"
#include "document/XmlTextWriter.h"

#include "fastinfoset/FastInfosetBinaryData.h"
#include "fastinfoset/FIVocabulary.h"
#include "fastinfoset/FastInfosetContext.h"
#include "fastinfoset/FastInfosetReader.h"
#include "fastinfoset/FastInfosetWriter.h"

#include "values/Conversions.h"
#include "values/QvVariant.h"

#include "validation/WhitespaceUtils.h"
#include "validation/RegEx.h"
#include "validation/PrimitiveRestrictions.h"
#include "validation/XmlObjectHelper.h"

#include "binding/SmartPtr.h"
#include "binding/XmlSerializationContext.h"
#include "binding/XmlObjectBase.h"
#include "binding/XmlGeneratedClass.h"
#include "binding/ClassfactoryBase.h"
#include "binding/metadata/ParentElementInfo.h"
#include "binding/metadata/ElementInfo.h"
#include "binding/metadata/AttributeInfo.h"
#include "binding/metadata/AttributeInfoKinds.h"
#include "binding/metadata/SequenceElementInfo.h"
#include "binding/metadata/AllElementInfo.h"
#include "binding/metadata/ChoiceElementInfo.h"

#include "collections/XmlCollection.h"
#include "collections/Element.h"
#include "collections/AttributeCollections.h"
