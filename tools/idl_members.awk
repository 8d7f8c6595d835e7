# idl_members.awk IDL... - prints the published members as Visual Basic declares them, one a line:
# CLASS <tab> MEMBER <tab> DECLARATION <tab> ARGUMENTS (separated by blanks). The events of a class have CLASS/events,
# values of an enumeration NAME/enum.

function typeName(type) {
    gsub(/[ *]/, "", type)
    if (type in types) return types[type]
    return type
}

function defaultOf(attributes, type,    value) {
    if (!match(attributes, /(defaultvalue|BY_REFERENCE)\([^)]*\)/)) return ""
    value = substr(attributes, RSTART, RLENGTH - 1)
    sub(/^[A-Za-z_]+\(/, "", value)
    if (value == "SINGLE_MINUS_ONE") value = "-1"
    if (value == "NO_TEXT" || value == "EMPTY_TEXT") value = "\"\""
    if (type == "Boolean") value = value == "0" ? "False" : "True"
    return " = " value
}

# One parameter as Visual Basic writes it; sets parameterName, isResult and parameterType.
function parameter(text,    attributes, optional, byReference, array) {
    match(text, /\[[^]]*\]/)
    attributes = substr(text, RSTART + 1, RLENGTH - 2)
    text = substr(text, RSTART + RLENGTH)
    array = text ~ /SAFEARRAY/ ? "()" : ""
    gsub(/SAFEARRAY\(|\)/, "", text)
    match(text, /[A-Za-z_0-9]+ *$/)
    parameterName = substr(text, RSTART, RLENGTH)
    gsub(/ /, "", parameterName)
    parameterType = typeName(substr(text, 1, RSTART - 1))
    isResult = attributes ~ /retval/
    optional = attributes ~ /optional|BY_REFERENCE/
    byReference = attributes ~ /in, out/ ? "ByRef " : ""
    text = byReference parameterName array " As " parameterType defaultOf(attributes, parameterType)
    return optional ? "[" text "]" : text
}

# Breaks a declaration that is too wide behind commas.
function wrapped(text,    lines, piece, end) {
    lines = ""
    while (length(text) > 110) {
        piece = substr(text, 1, 108)
        end = length(piece)
        while (end > 0 && substr(piece, end - 1, 2) != ", ") --end
        lines = lines substr(text, 1, end) "_\\n    "
        text = substr(text, end + 1)
    }
    return lines text
}

function member(attributes, text,    name, list, count, i, one, arguments, names, result) {
    sub(/^.*(HRESULT|void) +/, "", text)
    name = text
    sub(/\(.*/, "", name)
    sub(/^[^(]*\(/, "", text)
    sub(/\)[^)]*$/, "", text)
    gsub(/\], *\[/, "],[", text)
    # Commas between parameters stand before a bracket.
    gsub(/, *\[/, "\001[", text)
    count = text ~ /[^ ]/ ? split(text, list, "\001") : 0
    arguments = names = result = ""
    for (i = 1; i <= count; ++i) {
        one = parameter(list[i])
        if (isResult) {
            result = " As " parameterType
        } else {
            arguments = arguments (arguments == "" ? "" : ", ") one
            names = names (names == "" ? "" : " ") parameterName
        }
    }
    if (attributes ~ /prop/) return property(attributes, name, result == "" ? " As " parameterType : result)
    add(name, (kind == "events" ? "Event " : result == "" ? "Sub " : "Function ") name "(" arguments ")" result, names)
}

function property(attributes, name, result) {
    if (attributes ~ /propget/) readable[class name] = 1
    if (attributes ~ /propput/) writable[class name] = attributes ~ /propputref/ ? "Set" : "yes"
    add(name, "Property " name result, "")
}

function add(name, declaration, names,    key) {
    key = class "\t" name
    if (!(key in declarations)) order[++members] = key
    declarations[key] = declaration
    argumentNames[key] = names
    owner[key] = class name
}

function enumeration(text,    name, list, count, i) {
    name = text
    sub(/^.*\} */, "", name)
    class = name "/enum"
    sub(/^.*\{/, "", text)
    sub(/\}.*/, "", text)
    count = split(text, list, ",")
    for (i = 1; i <= count; ++i) {
        gsub(/^ +| +$/, "", list[i])
        name = list[i]
        sub(/ .*/, "", name)
        add(name, list[i], "")
    }
}

BEGIN {
    types["float"] = "Single"; types["long"] = "Long"; types["short"] = "Integer"; types["unsignedchar"] = "Byte"
    types["BSTR"] = "String"; types["VARIANT_BOOL"] = "Boolean"; types["VARIANT"] = "Variant"
    types["IPictureDisp"] = "StdPicture"; types["_CVrxHDR"] = "CVrxHDR"
}

/^ *(\/\/|#|import)/ { next }
{
    gsub(/helpstring\("[^"]*"\)/, "")
    source = source " " $0
}

END {
    gsub(/ +/, " ", source)
    count = split(source, statements, ";")
    for (s = 1; s <= count; ++s) {
        text = statements[s]
        if (match(text, /(dispinterface|interface) _+[A-Za-z]+ *(: IDispatch )?\{/)) {
            class = substr(text, RSTART, RLENGTH)
            kind = class ~ /^dispinterface/ ? "events" : "members"
            sub(/^[a-z]+ _+/, "", class)
            sub(/[^A-Za-z].*/, "", class)
            if (kind == "events") class = class "/events"
        }
        if (text ~ /typedef enum/) enumeration(text)
        else if (match(text, /\[[^]]*id\([0-9]+\)[^]]*\] (HRESULT|void) /)) {
            attributes = substr(text, RSTART, RLENGTH)
            member(attributes, substr(text, RSTART + RLENGTH - 8))
        }
    }
    for (m = 1; m <= members; ++m) {
        key = order[m]
        note = ""
        if (declarations[key] ~ /^Property/ && !(owner[key] in writable)) note = "  ' read only"
        if (writable[owner[key]] == "Set") note = "  ' assigned with Set"
        print key "\t" wrapped(declarations[key] note) "\t" argumentNames[key]
    }
}
