#include "type_library_table.h"

namespace published {
namespace {

Parameter optionalMinusOne(const char* name) { return {name, "Single", "in,optional=-1"}; }
Parameter optionalSingle(const char* name) { return {name, "Single", "in,optional=0"}; }
Parameter optionalLong(const char* name) { return {name, "Long", "in,optional=0"}; }
Parameter optionalText(const char* name) { return {name, "String", "in,optional=\"\""}; }
Parameter variant(const char* name) { return {name, "Variant*", "in,out"}; }
Parameter text(const char* name) { return {name, "String", "in"}; }
Parameter integer(const char* name) { return {name, "Long", "in"}; }
Parameter single(const char* name) { return {name, "Single", "in"}; }
Parameter value(const char* type) { return {"value", type, "in"}; }

Member getter(long id, const char* name, const char* type) { return {id, "get", name, {}, type}; }
Member setter(long id, const char* name, const char* type) { return {id, "put", name, {value(type)}, ""}; }
Member objectSetter(long id, const char* name, const char* type) {
    return {id, "putref", name, {value(type)}, ""};
}

Member method(long id, const char* name, std::vector<Parameter> parameters = {}, const char* result = "") {
    return {id, "method", name, std::move(parameters), result};
}

std::vector<Parameter> pictureRectangles() {
    return {optionalMinusOne("srcPX"), optionalLong("srcPY"),    optionalSingle("srcDX"),
            optionalLong("srcDY"),     optionalSingle("destPX"), optionalLong("destPY"),
            optionalSingle("destDX"),  optionalLong("destDY")};
}

const Interface kHdr = {
    "_CVrxHDR",
    {
        getter(1, "REGKEY", "String"),
        setter(1, "REGKEY", "String"),
        getter(2, "HDRLoading", "Boolean"),
        getter(3, "Gamma", "Single"),
        setter(3, "Gamma", "Single"),
        getter(4, "Exposure", "Single"),
        setter(4, "Exposure", "Single"),
        getter(5, "AutoExposition", "Boolean"),
        setter(5, "AutoExposition", "Boolean"),
        getter(6, "AutoExpositionType", "Enum_AutoExpositionType"),
        setter(6, "AutoExpositionType", "Enum_AutoExpositionType"),
        getter(7, "DimX", "Long"),
        getter(8, "DimY", "Long"),
        method(9, "Get_Picture", pictureRectangles(), "IPictureDisp*"),
        method(10, "Set_HDR", {variant("r_arHDR")}),
        method(11, "Get_HDR", {variant("r_arHDR")}),
        method(12, "Load", {optionalText("strPath")}, "String"),
        method(13, "See", {text("v_strFileName"), single("v_Exposure"), single("v_Gamma")}),
        method(14, "Save", {optionalText("strInputFile")}),
        method(15, "Convert_HDR_to_BMP",
               {text("strOutPutFile"), optionalMinusOne("Exposure"), optionalMinusOne("Gamma")}),
        method(16, "Load_HDR", {text("strFileName"), {"bInvert", "Boolean*", "in,out,optional=True"}}),
        method(17, "Save_HDR", {text("strOutFileName")}, "String"),
        method(18, "Get_Preview", {text("strFileName")}),
        method(19, "Get_BMP"),
        method(20, "Get_Compo", {integer("X"), integer("Y"), integer("ICompo")}, "Single"),
        method(21, "EndHDR"),
        method(22, "Get_Pixel",
               {integer("X"), integer("Y"), variant("sRed"), variant("sGreen"), variant("sBlu")}),
        method(23, "Cls"),
        method(24, "Init"),
    },
};

const Interface kImage = {
    "_CVrxImage",
    {
        getter(1, "REGKEY", "String"),
        setter(1, "REGKEY", "String"),
        getter(2, "DimX", "Long"),
        getter(3, "DimY", "Long"),
        method(4, "Load", {optionalText("strPath")}, "String"),
        method(5, "Get_Picture", pictureRectangles(), "IPictureDisp*"),
        method(6, "See", {text("strFileName")}),
        method(7, "Set_BMP", {{"r_arBMP", "Byte()*", "in,out"}, {"r_BmpInfo", "BmpInfo*", "in,out"}}),
        method(8, "Get_BMP", {{"r_arBMP", "Byte()*", "in,out"}, {"r_BmpInfo", "BmpInfo*", "in,out"}}),
        method(9, "Cls"),
        method(10, "Save", {optionalText("strInputFile")}),
        method(11, "Convert_BMP_to_JPG",
               {text("strOutPutFile"), {"lQuality", "Long", "in,optional=90"}, optionalText("strInputFile")}),
        method(12, "Save_BMP", {{"strOutPutFile", "String*", "in,out,optional=\"\""}}, "String"),
        method(13, "Load_BMP", {text("strFileName")}),
    },
};

const Interface kEffects = {
    "_ImageFX",
    {
        method(1, "ScaleX", {single("Width")}, "Integer"),
        method(2, "ScaleY", {single("Height")}, "Integer"),
        method(3, "Blur_Buffer", {variant("Buffer"), integer("DimX"), integer("DimY")}),
        method(4, "MedianCut_Buffer", {variant("Buffer"), integer("DimX"), integer("DimY")}),
        method(5, "ColorToBN",
               {text("FileName"),
                integer("PictureHDC"),
                integer("ImageHandle"),
                {"TwoColor", "Boolean*", "in,out,optional=False"},
                {"Threshold", "Byte*", "in,out,optional=128"},
                {"HoldProportion", "Boolean*", "in,out,optional=False"},
                {"Width", "Long*", "in,out,optional=0"},
                {"Height", "Long*", "in,out,optional=0"}},
               "Boolean"),
    },
};

const Interface kPattern = {
    "_CVrxPattern",
    {
        getter(1, "REGKEY", "String"),
        setter(1, "REGKEY", "String"),
        method(2, "Load", {{"Default", "String*", "in,out"}}),
        method(3, "Get_PatternFromString", {text("strPattern"), integer("NumItem"), variant("arPattern")}),
    },
};

const Interface kFunctions = {
    "_CVrxFun",
    {
        method(1, "Get_XPathStep", {{"r_strKeyString", "Variant*", "in"}, {"v_intKeyPos", "Integer", "in"}},
               "String"),
        method(2, "Get_Key", {{"r_strKeyString", "Variant*", "in"}, {"v_intKeyPos", "Integer", "in"}},
               "String"),
        method(3, "Get_AbsolutePath", {text("strRelativeFile"), text("strFatherPath")}, "String"),
        method(4, "Get_RelativePath", {text("strFile"), text("strFatherPath")}, "String"),
        method(5, "Get_PathShortFormat", {text("v_strPath")}, "String"),
        method(6, "Get_AppName", {variant("r_strFullPath"), {"v_GetExtension", "Boolean", "in"}}, "String"),
        method(7, "Get_Path", {text("strFile")}, "String"),
        method(8, "VrxMsgBox", {text("v_strMessage"), integer("v_mbsMode"), optionalText("v_strTitle")},
               "Long"),
        method(9, "Show_ShortMessage", {text("strMessage")}),
        method(10, "Hide_ShortMessage", {}, "Boolean"),
    },
};

const Interface kPreview = {
    "_VrxPreviewImg",
    {
        getter(1, "Picture", "IPictureDisp*"),
        setter(1, "Picture", "IPictureDisp*"),
        getter(2, "objHDR", "_CVrxHDR*"),
        objectSetter(2, "objHDR", "_CVrxHDR*"),
        method(3, "Get_Prop", {integer("Width"), integer("Height")}),
        setter(4, "HDRFile", "Boolean"),
        getter(4, "HDRFile", "Boolean"),
        setter(5, "File", "String"),
        getter(5, "File", "String"),
        getter(6, "ImageWidth", "Long"),
        getter(7, "ImageHeight", "Long"),
        getter(8, "MousePointer", "Integer"),
        setter(8, "MousePointer", "Integer"),
        getter(9, "MouseIcon", "IPictureDisp*"),
        objectSetter(9, "MouseIcon", "IPictureDisp*"),
        method(10, "FitPicture"),
        method(11, "Get_Proportion",
               {{"BoxWidth", "Long*", "in,out"},
                {"BoxHeight", "Long*", "in,out"},
                {"PictureWidth", "Long*", "in,out"},
                {"PictureHeight", "Long*", "in,out"}}),
    },
};

}  // namespace

const std::vector<Interface> kInterfaces = {kHdr, kImage, kEffects, kPattern, kFunctions, kPreview};

const std::vector<Interface> kEvents = {
    {"__CVrxHDR",
     {
         method(1, "OnRefresh", {{"PicHDR", "Variant", "in"}}),
         method(2, "OnHeaderLoaded", {integer("DimX"), integer("DimY")}),
         method(3, "OnFinish"),
     }},
    {"__VrxPreviewImg", {method(1, "Click")}},
};

const std::vector<Enumeration> kEnumerations = {
    {"Enum_SaveImageType", {{"IMBMP", 0}, {"IMJPG", 1}}},
    {"Enum_AutoExpositionType", {{"HDRAETMax", 0}, {"HDRAETMinMax", 1}}},
    {"Enum_ImageMode", {{"IMNone", 0}, {"IMLoad", 1}, {"IMSave", 2}, {"IMSee", 3}}},
};

const std::vector<Class> kClasses = {
    {"CVrxHDR", "_CVrxHDR", "__CVrxHDR"}, {"CVrxImage", "_CVrxImage", ""},
    {"ImageFX", "_ImageFX", ""},          {"CVrxPattern", "_CVrxPattern", ""},
    {"CVrxFun", "_CVrxFun", ""},          {"VrxPreviewImg", "_VrxPreviewImg", "__VrxPreviewImg", true},
};

const std::vector<Identifier> kIdentifiers = {
    {"VrxCommon", "{271DDEDC-AA8E-40E4-8980-0EE31D67DBA4}"},
    {"Enum_SaveImageType", "{8037D10A-5731-4ADC-A260-7C0FC2C8E34A}"},
    {"Enum_AutoExpositionType", "{EBCA63EB-433F-4B96-88D3-1A47ACF76771}"},
    {"Enum_ImageMode", "{CF877E86-2278-4421-93A5-7A5E712C6BE3}"},
    {"_CVrxHDR", "{0679879B-7A1A-4CAC-8D70-03CFA4F7111B}"},
    {"__CVrxHDR", "{9AC26BC9-60D8-47B0-84E2-727FBE274205}"},
    {"_CVrxImage", "{B4F251DF-9AE6-4D7D-899B-ABA819DD08C2}"},
    {"_ImageFX", "{C9E5D3A5-E0D1-4EEC-8B8A-AC0CC41596B4}"},
    {"_CVrxPattern", "{4DC7B9C7-7B52-41C8-AB82-4086578B2582}"},
    {"_CVrxFun", "{4F1BFFC4-04AB-4222-B021-3636FC9A7216}"},
    {"_VrxPreviewImg", "{F069D50D-641F-4E5D-9AD8-61DDFFC7C236}"},
    {"__VrxPreviewImg", "{7890A1BD-4FD4-46AE-AC69-7828EC3AFDE2}"},
    {"CVrxHDR", "{EB392251-79D7-47DB-A99F-C6DB793EE02B}"},
    {"CVrxImage", "{7915FD95-6F65-4898-978F-9DBD7BF82C58}"},
    {"ImageFX", "{AE6B3F3C-1723-4934-914B-FB8F5F5AD8D4}"},
    {"CVrxPattern", "{18F8527C-9AE6-4C5A-A865-308B4AB3DFC5}"},
    {"CVrxFun", "{C97C1D08-1D53-4297-A2F7-956DD49CD19C}"},
    {"VrxPreviewImg", "{C18292E6-BA22-49DD-9997-E84C248296BE}"},
    {"VrxTypeLib", "{897F52C7-06C5-419E-8D75-FE91814045D8}"},
    {"RgbQuad", "{37A41D57-714A-449E-A0DE-8D06AEFAE3D9}"},
    {"BmpInfo", "{7008D90C-4753-463B-83DA-3D8B32D9269E}"},
};

std::string line(const Member& member) {
    std::string text = std::to_string(member.id) + ' ' + member.kind + ' ' + member.name + '(';
    for (const Parameter& parameter : member.parameters) {
        text += '[' + parameter.passing + "] " + parameter.type + ' ' + parameter.name + "; ";
    }
    return text + ')' + member.result;
}

}  // namespace published
