# Fills the description and the releases into the metainfo: awk -f metainfo.awk description changelog kestrix.metainfo.xml.in
# Paragraphs of the description and points of the change log become those of XML.

function xml(text) {
    gsub(/&/, "\\&amp;", text)
    gsub(/</, "\\&lt;", text)
    gsub(/>/, "\\&gt;", text)
    return text
}

function trimmed(text) {
    gsub(/^ +| +$/, "", text)
    return text
}

function endParagraph() {
    if (paragraph != "") description = description "    <p>" xml(paragraph) "</p>\n"
    paragraph = ""
}

function endPoint() {
    if (point != "") points = points "          <li>" xml(point) "</li>\n"
    point = ""
}

# "Sun, 22 Nov 2026 10:00:00 +0000" is the 2026-11-22.
function day(date,    words) {
    split(date, words, " ")
    return sprintf("%s-%02d-%02d", words[4], (index("JanFebMarAprMayJunJulAugSepOctNovDec", words[3]) + 2) / 3, words[2])
}

FNR == 1 { file++ }

file == 1 {
    if ($0 == "") endParagraph()
    else paragraph = trimmed(paragraph " " $0)
    next
}

file == 2 && /^[a-z]/ {
    version = $2
    gsub(/[()]/, "", version)
}
file == 2 && /^  \* / {
    endPoint()
    point = substr($0, 5)
}
file == 2 && /^    / { point = point " " trimmed($0) }
file == 2 && /^ -- / {
    endPoint()
    sub(/.*>  /, "")
    releases = releases "    <release version=\"" version "\" date=\"" day($0) "\">\n      <description>\n        <ul>\n" \
        points "        </ul>\n      </description>\n    </release>\n"
    points = ""
}
file == 2 { next }

/@DESCRIPTION@/ {
    endParagraph()
    printf "%s", description
    next
}
/@RELEASES@/ {
    printf "%s", releases
    next
}
{ print }
