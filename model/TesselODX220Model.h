#pragma once

// The whole public interface of the model, with the platform classes it is built on.

#include "TesselLogging/VLogging.h"
#include "TesselSharedUtil/VByteStream.h"
#include "TesselSharedUtil/VContainerYAString.h"
#include "TesselSharedUtil/VYAString.h"

#include "framework/TesselODX220ModelExport.h"
#include "framework/VExternalIterator.h"
#include "framework/VListCollection.h"
#include "framework/VOdx.h"
#include "framework/VOdxElement.h"
#include "framework/VOdxException.h"
#include "framework/VOdxFactory.h"
#include "framework/VOdxTagEnum.h"
#include "framework/VOwningList.h"
#include "framework/VProcessingInstruction.h"
#include "framework/VSmartObject.h"
#include "framework/VSmarty.h"
#include "framework/VXPathType.h"

#include "references/ILink.h"
#include "references/VAbstractSnrefResolver.h"
#include "references/VDoctype.h"
#include "references/VIdRefMap.h"
#include "references/VOdxLinkSet.h"
#include "references/VOdxlink.h"
#include "references/VReferencable.h"
#include "references/VSnref.h"
#include "references/VUnresolvedIdRef.h"

#include "values/VSimpleXmlElement.h"
#include "values/VTextIdElementSet.h"

#include "TesselODX220ModelClasses.h"
