#pragma once

#include "framework/TesselODX220ModelExport.h"

namespace NODX220 {

class IIdentIf;
class IInParamIf;
class IOutParamIf;
class VBaseVariant;
class VBasicStructure;
class VCodedConst;
class VConfigData;
class VConfigRecord;
class VDataObjectProp;
class VDataRecord;
class VDiagComm;
class VDiagLayer;
class VDiagVariable;
class VDopBase;
class VDtc;
class VEcuVariant;
class VEnvDataDesc;
class VFlash;
class VOdx;
class VParam;
class VPhysConst;
class VProtStack;
class VProtocol;
class VRequest;
class VResponse;
class VSession;
class VState;
class VStateChart;
class VStructure;
class VTable;
class VTableKey;
class VTableRow;
class VValue;

// Where a short name is looked for; the model passes it on without looking at it.
enum VSearchRange {
    eSearchRangeLocal = 0,
    eSearchRangeInherited = 1
};

// Finds the target of a short-name reference in a context. Written outside the model and
// installed with VOdx::Initialize; typed link elements ask it from their Has operations. Each
// operation gets the terminated short name first and returns the target, or null.
class TESSEL_ODX_API VAbstractSnrefResolver {
public:
    VAbstractSnrefResolver() = default;
    virtual ~VAbstractSnrefResolver();

    virtual IInParamIf* ResolveInParamIf(const char* shortName, VDiagComm& diagComm) = 0;
    virtual IIdentIf* ResolveIdentIf(const char* shortName, VFlash& flash) = 0;
    virtual IOutParamIf* ResolveOutParamIf(const char* shortName, VDiagComm& diagComm,
                                           VDiagLayer& layer, VSearchRange range) = 0;
    virtual VSession* ResolveSession(const char* shortName, VFlash& flash) = 0;
    virtual VProtocol* ResolveProtocol(const char* shortName, VOdx& odx) = 0;
    virtual VDiagVariable* ResolveDiagVariable(const char* shortName, VDiagLayer& layer) = 0;
    virtual VDiagComm* ResolveDiagComm(const char* shortName, VConfigData& configData) = 0;
    virtual VDiagComm* ResolveDiagComm(const char* shortName, VDiagLayer& layer) = 0;
    virtual VDopBase* ResolveDopBase(const char* shortName, VDiagLayer& layer) = 0;
    virtual VDataObjectProp* ResolveDataObjectProp(const char* shortName, VDiagLayer& layer) = 0;
    virtual VState* ResolveState(const char* shortName, VStateChart& stateChart) = 0;
    virtual VStructure* ResolveStructure(const char* shortName, VDiagLayer& layer) = 0;
    virtual VProtStack* ResolveProtStack(const char* shortName, VProtocol& protocol) = 0;
    virtual VDataRecord* ResolveDataRecord(const char* shortName, VConfigRecord& configRecord) = 0;
    virtual VDtc* ResolveDtc(const char* shortName, VDiagLayer& layer) = 0;
    virtual VEcuVariant* ResolveEcuVariant(const char* shortName, VBaseVariant& baseVariant) = 0;
    virtual VBaseVariant* ResolveBaseVariant(const char* shortName, VOdx& odx) = 0;
    virtual VParam* ResolveParam(const char* shortName, VDiagComm& diagComm, VDiagLayer& layer,
                                 VSearchRange range) = 0;
    virtual VBasicStructure* ResolveBasicStructure(const char* shortName, VDiagLayer& layer) = 0;
    virtual VEnvDataDesc* ResolveEnvDataDesc(const char* shortName, VDiagLayer& layer) = 0;
    virtual VTable* ResolveTable(const char* shortName, VDiagLayer& layer) = 0;
    virtual VTableRow* ResolveTableRow(const char* shortName, VTable& table) = 0;
    virtual VCodedConst* ResolveCodedConst(const char* shortName, VRequest& request) = 0;
    virtual VValue* ResolveValue(const char* shortName, VRequest& request) = 0;
    virtual VPhysConst* ResolvePhysConst(const char* shortName, VRequest& request) = 0;
    virtual VTableKey* ResolveTableKey(const char* shortName, VResponse& response) = 0;
    virtual VTableKey* ResolveTableKey(const char* shortName, VRequest& request) = 0;
};

} // namespace NODX220
