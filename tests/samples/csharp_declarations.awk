# csharp_declarations.awk - makes of idl_members.awk's lines what .NET's importer makes of the type library, so far as a C#
# compiler sees it: the names and types of members, arguments and events.

BEGIN {
    FS = "\t"
    split("String string Boolean bool Single float Double double Long int Integer short Byte byte", pairs, " ")
    for (i = 1; i in pairs; i += 2) types[pairs[i]] = pairs[i + 1]
    print "using System;"
    print "namespace VrxCommon {"
}

function typeName(type) {
    if (type ~ /\(\)$/) return "Array"
    if (type in types) return types[type]
    return type ~ /^(Enum_|BmpInfo$)/ ? type : "object"
}

# One argument, "[ByRef name() As Type = default]"; a default by reference is for callers that leave the argument out, which
# C# does not let them do.
function parameter(text,    optional, reference, array, words, value) {
    optional = sub(/^\[/, "", text)
    sub(/\]$/, "", text)
    reference = sub(/^ByRef /, "", text)
    array = sub(/\(\) As/, " As", text) ? "()" : ""
    split(text, words, " ")
    value = words[5]
    if (value ~ /^(True|False)$/) value = tolower(value)
    return (reference ? "ref " : "") typeName(words[3] array) " @" words[1] (optional && !reference ? " = " value : "")
}

function parameters(declaration,    list, texts, count, i) {
    list = substr(declaration, index(declaration, "(") + 1)
    sub(/\)( As [A-Za-z_]+)?$/, "", list)
    count = split(list, texts, /, +/)
    list = ""
    for (i = 1; i <= count; ++i) list = list (i > 1 ? ", " : "") parameter(texts[i])
    return list
}

function result(declaration) {
    return match(declaration, /\) As [A-Za-z_]+$/) ? typeName(substr(declaration, RSTART + 5)) : "void"
}

function close_() { if (open_ != "") print "}"; open_ = "" }

{
    gsub(/ *_\\n */, " ", $3)
    kind = split($1, name, "/") > 1 ? name[2] : "class"
    if ($1 != last) {
        close_()
        open_ = last = $1
        print kind == "enum" ? "public enum " name[1] " {" : "public partial class " name[1] " {"
    }
}

kind == "enum" { print "    " $3 "," }

kind == "events" {
    print "    public delegate void " $2 "Handler(" parameters($3) ");"
    print "    public event " $2 "Handler " $2 " { add {} remove {} }"
}

kind == "class" && $3 ~ /^Property/ {
    readOnly = sub(/ +' read only$/, "", $3)
    sub(/.* As /, "", $3)
    print "    public " typeName($3) " " $2 " { get { throw new Exception(); }" (readOnly ? "" : " set {}") " }"
}

kind == "class" && $3 ~ /^(Function|Sub)/ {
    print "    public " result($3) " " $2 "(" parameters($3) ") { throw new Exception(); }"
}

END {
    close_()
    print "public struct BmpInfo {}"
    print "}"
}
