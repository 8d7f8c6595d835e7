# docs_copies.awk -v members=FILE PAGE - prints a page of the documentation with its copies renewed:
# - behind a line <!-- samples/FILE --> or <!-- samples/FILE [part] -->, the block shows that file or the lines between
#   [part] and [/part], each alone in a comment, without Visual Basic's own Attribute lines;
# - behind a heading ### MEMBER of a page in docs/reference, the block shows the member's declaration;
# - behind a heading ## Enum_NAME, the block shows the enumeration.
# Run it in the project's folder; members holds what idl_members.awk prints. Fails when something does not exist.

function complain(text) {
    print FILENAME ": " text >"/dev/stderr"
    failed = 1
}

function languageOf(file) {
    sub(/^.*\./, "", file)
    return file in languages ? languages[file] : file
}

# The lines of a sample, or of a part of it without the indentation of its first line.
function printSample(file, part,    line, found, copying, indent, marker) {
    print "```" languageOf(file)
    copying = part == ""
    indent = copying ? 0 : -1
    while ((getline line < file) > 0) {
        sub(/\r$/, "", line)
        found = 1
        if (line ~ /^ *('|\/\/|#) \[\/?[a-z-]+\]$/) {
            marker = line
            sub(/^[^\[]*/, "", marker)
            if (marker == "[" part "]") { copying = 1; started[file, part] = 1 }
            if (marker == "[/" part "]") copying = 0
            continue
        }
        # Visual Basic keeps these lines from its users.
        if (!copying || line ~ /^Attribute /) continue
        if (indent < 0) {
            match(line, /^ */)
            indent = RLENGTH
        }
        print substr(line, 1, indent) ~ /^ *$/ ? substr(line, indent + 1) : line
    }
    close(file)
    print "```"
    if (!found) complain("no such file: " file)
    else if (part != "" && !started[file, part]) complain("no such part: " file " [" part "]")
}

function printBlock(text) {
    gsub(/\\n/, "\n", text)
    print "```vb\n" text "\n```"
}

BEGIN {
    FS = "\t"
    languages["vbs"] = languages["bas"] = languages["cls"] = languages["frm"] = "vb"
    languages["ps1"] = "powershell"; languages["py"] = "python"; languages["cs"] = "csharp"
    languages["csproj"] = "xml"; languages["dpr"] = "pascal"
    while ((getline < members) > 0) {
        declarations[$1, $2] = $3
        if ($1 ~ /\/enum$/) values[$1] = values[$1] "    " $3 "\\n"
        expected[$1] = expected[$1] " " $2
    }
    page = ARGV[1]
    reference = page ~ /(^|\/)docs\/reference\//
    class = page
    sub(/^.*\//, "", class)
    sub(/\.md$/, "", class)
    events = class == "events"
    # Where nothing follows a heading but its old block, the block is skipped.
    FS = "\n"
}

waiting && /^ *$/ { next }
waiting && /^```/ { skipping = !skipping; if (!skipping) waiting = 0; next }
skipping { next }
waiting { waiting = 0; print "" }

{ print }

/^<!-- samples\/[^ ]+( \[[a-z-]+\])? -->$/ {
    file = part = $0
    sub(/^<!-- /, "", file)
    sub(/ .*/, "", file)
    part = part ~ /\[/ ? part : ""
    gsub(/^[^\[]*\[|\].*$/, "", part)
    printSample(file, part)
    waiting = 1
}

reference && events && /^## / { class = substr($0, 4) "/events" }

reference && /^## Enum_/ {
    name = substr($0, 4)
    if (!((name "/enum") in values)) complain("no such enumeration: " name)
    print ""
    printBlock("Enum " name "\\n" values[name "/enum"] "End Enum")
    waiting = 1
    delete expected[name "/enum"]
}

reference && /^### / {
    name = substr($0, 5)
    if (!((class, name) in declarations)) complain("no such member: " name)
    print ""
    printBlock(declarations[class, name])
    waiting = 1
    sub(" " name "( |$)", " ", expected[class])
}

END {
    if (reference) {
        for (owner in expected) {
            mine = owner == class || (events && owner ~ /\/events$/) || (class == "enumerations" && owner ~ /\/enum$/)
            if (mine && expected[owner] ~ /[^ ]/) complain("not described: " owner expected[owner])
        }
    }
    exit failed
}
