# What doxygen reads instead of a header. In the headers one comment stands above all declarations that follow it without
# a blank line, and the comment of a group above all members of it that have none of their own; doxygen gives a comment
# to the next declaration alone, so here each declaration gets its copy. Destructors and deleted functions take none.
#
# Explicit instantiation declarations are left out: they repeat what a template has said, and doxygen would list each as
# a function of its own.
#
# Lines stay where they are: a copy goes in front of the declaration, on its line.

function count(text, characters) { return gsub(characters, "", text) }

# Whether what lies here is declared to callers: in a namespace, class, structure or enumeration.
function isOpenScope() { return depth == 0 || scope[depth] == "open" }

# A declaration is over where its brackets are closed and its last line ends one. What is said of a class or an
# enumeration is not said of its first member.
function follow(line,   code) {
    code = line
    sub(/[ \t]*\/\/.*$/, "", code)
    parentheses += count(code, "[(]") - count(code, "[)]")
    if (code ~ /^[ \t]*\{$/) {
        scope[++depth] = kind
        isInside = 0
        if (kind == "open") {
            comment = ""
            isUsed = 1
        }
        return
    }
    if (code ~ /^[ \t]*\}[;,]?$/ && depth > 0) {
        --depth
        isInside = 0
        return
    }
    isInside = !(parentheses == 0 && code ~ /[;}]$/)
}

function asBlock(text) { return text == "" ? "" : "/** " text " */ " }

{ sub(/\r$/, "") }

isSkipping || /^extern template/ {
    isSkipping = !/;$/
    print ""
    next
}

/^#/ || /^[ \t]*(public|protected|private):/ || /^[ \t]*\/\/($|[^\/])/ {
    comment = ""
    isUsed = 1
    wasComment = 0
    print
    next
}

/^[ \t]*\/\/\/ ?@\{|^[ \t]*\/\/\/ ?\\\{/ {
    group[++groupDepth] = comment != "" && !isUsed ? comment : ""
    isNamed = 0
    comment = group[groupDepth]
    isUsed = 1
    print
    next
}

/^[ \t]*\/\/\/ ?@\}|^[ \t]*\/\/\/ ?\\\}/ {
    --groupDepth
    comment = ""
    print
    next
}

/^[ \t]*\/\/\/($|[^<])/ {
    text = $0
    sub(/^[ \t]*\/\/\/ ?/, "", text)
    if (text ~ /^\\name/) {
        comment = ""
        isNamed = 1
        isUsed = 0
    } else {
        if (isUsed || !wasComment) {
            comment = isNamed ? comment : ""
        }
        comment = comment (comment == "" ? "" : " ") (text == "" ? "<br>" : text)
        isUsed = 0
    }
    wasComment = 1
    print
    next
}

/^[ \t]*$/ {
    if (!isInside) {
        comment = groupDepth > 0 ? group[groupDepth] : ""
        isUsed = 1
    }
    wasComment = 0
    print
    next
}

{
    copy = ""
    isStart = !isInside && isOpenScope() && /^[ \t]*[A-Za-z_\[]/ &&
        !/^[ \t]*(using|friend|namespace|static_assert|typedef)[ (]/
    if (isStart && isTemplate) {
        kind = /^[ \t]*class[ ]/ ? "open" : "body"
        isTemplate = 0
    } else if (isStart) {
        isTemplate = /^[ \t]*template <.*>$/
        kind = /^[ \t]*(class|struct|enum|namespace|union)[ ]/ ? "open" : "body"
        isPlain = !/\/\/\/</
        if (isUsed && kind == "body" && isPlain && !/^[ \t]*virtual ~/ && !/= delete;$/) {
            copy = asBlock(comment)
        }
        isUsed = 1
    } else if (!isInside && /^[ \t]*namespace[ ]/) {
        kind = "open"
    }
    wasComment = 0
    follow($0)
    isInside = isInside && !isTemplate
    if (copy == "") {
        print
    } else {
        match($0, /^[ \t]*/)
        print substr($0, 1, RLENGTH) copy substr($0, RLENGTH + 1)
    }
}
