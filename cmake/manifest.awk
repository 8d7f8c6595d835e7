# Prints the manifest of a DLL for registration-free use, from its class table, which tells what controls are like, and
# the IDL of its type library, in this order (mawk).
# Its version is that of the interface, so that hosts' manifests stay right from one release to the next.
# Variables: dll, architecture (x86, amd64), more_typelibs ("UUID VERSION RESOURCE" triples).

function typelib(uuid, version, resource) {
    return "    <typelib tlbid=\"{" uuid "}\" version=\"" version "\" helpdir=\"\" resourceid=\"" resource "\"/>\n"
}

function between(text, before, after,    start) {
    start = index(text, before) + length(before)
    text = substr(text, start)
    return substr(text, 1, index(text, after) - 1)
}

# In the class table: "ControlTraits kName{OLEMISC_... | OLEMISC_..., NUMBER};". A manifest writes the bits as small letters.
/ControlTraits k/ { control = between($0, "ControlTraits k", "{") }
control != "" {
    rest = $0
    while ((start = index(rest, "OLEMISC_")) > 0) {
        rest = substr(rest, start + 8)
        match(rest, /^[A-Z0-9]+/)
        misc[control] = misc[control] (misc[control] == "" ? "" : ",") tolower(substr(rest, 1, RLENGTH))
    }
}
/};/ { control = "" }

/^[ \t]*\[/ { creatable = 1 }
/uuid\(/ { uuid = between($0, "uuid(", ")") }
/[^a-z]version\(/ { library_version = between($0, "version(", ")") }
/helpstring\("/ { description = between($0, "helpstring(\"", "\")") }
/noncreatable/ { creatable = 0 }

/^library / {
    library = $2
    library_uuid = uuid
}

function stub(name, proxy) {
    return "  <comInterfaceExternalProxyStub name=\"" name "\" iid=\"{" uuid "}\" tlbid=\"{" library_uuid "}\"" \
        "\n      proxyStubClsid32=\"{" proxy "-0000-0000-C000-000000000046}\"/>\n"
}

# The system's own proxies: of the type library for interfaces, of late binding for events.
/^    interface _.* : IDispatch/ { stubs = stubs stub($2, "00020424") }
/^    dispinterface _/ { stubs = stubs stub($2, "00020420") }

/^    coclass / && creatable {
    name = library "." $2
    content = misc[$2] == "" ? "" : "\n      miscStatusContent=\"" misc[$2] "\""
    classes = classes "    <comClass description=\"" description "\"\n      clsid=\"{" uuid "}\" progid=\"" name ".1\"" \
        " threadingModel=\"Apartment\"\n      tlbid=\"{" library_uuid "}\"" content ">\n      <progid>" name "</progid>\n    </comClass>\n"
}

END {
    typelibs = typelib(library_uuid, library_version, 1)
    count = split(more_typelibs, words, " ")
    for (i = 1; i + 2 <= count; i += 3) typelibs = typelibs typelib(words[i], words[i + 1], words[i + 2])
    print "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>"
    print "<assembly xmlns=\"urn:schemas-microsoft-com:asm.v1\" manifestVersion=\"1.0\">"
    print "  <assemblyIdentity type=\"win32\" name=\"" library ".X\" version=\"" library_version ".0.0\"" \
        " processorArchitecture=\"" architecture "\"/>"
    printf "  <file name=\"%s\">\n%s%s  </file>\n%s</assembly>\n", dll, classes, typelibs, stubs
}
