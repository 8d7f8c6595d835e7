// Lists the sections that have all the words; those with a word in the heading come first.
function search() {
    var words = document.getElementById("words").value.toLowerCase().split(/[\s(),]+/);
    var best = [], rest = [], i, j, heading, text, all, named;
    for (i = 0; i < sections.length; ++i) {
        heading = (sections[i][0] + " " + sections[i][1]).toLowerCase();
        text = sections[i][3].toLowerCase();
        all = true;
        named = false;
        for (j = 0; j < words.length; ++j) {
            if (words[j] && heading.indexOf(words[j]) >= 0) named = true;
            else if (text.indexOf(words[j]) < 0) all = false;
        }
        if (all) (named ? best : rest).push(sections[i]);
    }
    show(best.concat(rest), words[0]);
}

// The words of a text around one of them.
function excerpt(text, word) {
    var start = text.toLowerCase().indexOf(word) - 60, end;
    start = start > 0 ? text.indexOf(" ", start) + 1 : 0;
    end = start + 160 < text.length ? text.lastIndexOf(" ", start + 160) : text.length;
    if (end <= start) end = text.length;
    return (start > 0 ? "... " : "") + text.substring(start, end) + (end < text.length ? " ..." : "");
}

function show(found, word) {
    var list = document.getElementById("found"), i, entry, link, text;
    list.innerHTML = "<p>" + found.length + " found<\/p>";
    for (i = 0; i < found.length; ++i) {
        entry = document.createElement("p");
        link = document.createElement("a");
        link.href = found[i][2];
        text = found[i][0] + (found[i][1] === found[i][0] ? "" : ": " + found[i][1]);
        link.appendChild(document.createTextNode(text));
        entry.appendChild(link);
        entry.appendChild(document.createElement("br"));
        entry.appendChild(document.createTextNode(excerpt(found[i][3], word)));
        list.appendChild(entry);
    }
}

// search.html?words opens with what it found.
if (location.search) {
    document.getElementById("words").value = decodeURIComponent(location.search.substr(1).replace(/\+/g, " "));
    search();
}
