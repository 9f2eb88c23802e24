# judge.awk SOURCE... facts=1 FACTS
# Puts the facts of all programs together: what ran in any of them, in any instance of a template,
# ran. Compares what did not with the marks in the sources, and prints a table of all files.
# Exit code 1 when something is neither covered nor marked, or marked and covered.
#
# A mark is a comment `unreachable: reason` at the end of a line, or in lines of its own before it. It
# speaks for the branches and conditions of that line, and for the lines from there on that never run.
#
# Not counted are lines without a word of code (braces, comments, preprocessor), and constexpr
# functions of which no program holds any code: the compiler alone runs them. Templates of which no
# program has an instance are not seen at all.

function report(file, line, what) {
    print file ":" line ": " what
    failed = 1
}

function miss(file, line, what) {
    missing[file, line] = missing[file, line] "\n" what
}

# Whether the declaration that ends where the function's body begins says constexpr.
function isConstexpr(file, line, column,    head) {
    head = substr(text[file, line], 1, column - 1)
    while (head !~ /constexpr|consteval/ && line > 1) {
        --line
        if (text[file, line] ~ /[;{}:]$/ || text[file, line] ~ /^ *(\/\/.*)?$/) {
            return 0
        }
        head = text[file, line]
    }
    return head ~ /constexpr|consteval/
}

function figure(file, kind) {
    return all[file, kind] ? done[file, kind] + 0 "/" all[file, kind] : "-"
}

function row(name, file) {
    printf "%-38s %11s %11s %11s %7s\n", name, figure(file, "line"), figure(file, "branch"),
        figure(file, "condition"), marks[file] ? marks[file] : ""
}

function printMarks(file,    line, reason) {
    for (line = 1; line <= lineCount[file]; ++line) {
        if (mark[file, line]) {
            reason = text[file, mark[file, line]]
            sub(/.*\/\/ unreachable: /, "", reason)
            printf "%s:%d: unreachable: %s\n", file, line, reason
        }
    }
}

BEGIN { FS = "\t" }

# --- The sources --------------------------------------------------------------------------------

!facts && FNR == 1 {
    files[++fileCount] = name = FILENAME
    pending = 0
}
!facts {
    text[name, FNR] = $0
    code = $0
    sub(/\/\/.*/, "", code)
    isCode[name, FNR] = code ~ /[A-Za-z0-9]/ && code !~ /^ *#/
    firstColumn[name, FNR] = match($0, /[^ }]/)
    lineCount[name] = FNR
    if ($0 ~ /\/\/ unreachable: /) {
        pending = FNR
        if ($0 !~ /\/\/ unreachable: [^ ]/) {
            report(name, FNR, "a mark without a reason")
        }
    } else if ($0 ~ /\/\/ *unreachable/) {
        report(name, FNR, "a mark is written `// unreachable: reason`")
    }
    if (pending && code ~ /[^ ]/) {
        mark[name, FNR] = pending
        ++marks[name]
        pending = 0
    }
    next
}

# --- The facts ----------------------------------------------------------------------------------

function add(file, line, column, kind, what, ranHere,    key) {
    key = file SUBSEP line SUBSEP column SUBSEP kind SUBSEP what
    if (!(key in ran)) {
        keys[++keyCount] = key
    }
    ran[key] += ranHere
}

# The lines of a function, and of each macro in it: a line belongs to the innermost region that its
# first character is in. (llvm-cov itself takes some from the gaps between regions.)
function endFunction(    key, at) {
    for (key in painted) {
        split(key, at, SUBSEP)
        if (hasCode && painted[key] != "") {
            addLine(at[1], at[2], first, painted[key])
        }
        delete painted[key]
    }
}

# A line that the function beginning at `place` has. A lambda stands on lines of the function around
# it: the functions that begin on the line count, else the innermost.
function addLine(file, line, place, ranHere,    key, before) {
    key = file SUBSEP line
    before = owner[key]
    if (before == "" || (place > before && before < line * 1000)) {
        owner[key] = place
    }
    lineRan[key, place] += ranHere
    if (!((key, place) in isPlace)) {
        isPlace[key, place] = 1
        places[key] = places[key] " " place
    }
}

function ownersRan(key, line,    each, count, i, all) {
    all = lineRan[key, owner[key]]
    count = split(places[key], each, " ")
    for (i = 1; i <= count; ++i) {
        if (each[i] >= line * 1000 && !lineRan[key, each[i]]) {
            all = 0
        }
    }
    return all
}

$1 == "function" { endFunction() }
!($2 in lineCount) { next } # not a source of the library
$1 == "function" {
    key = $2 SUBSEP $3 SUBSEP $4
    lastLine[key] = $5
    emitted[key] += hasCode = $6
    first = $3 * 1000 + $4 # a line has at most 100 columns
    isFirst = 1
}
$1 == "region" {
    for (line = $3 + 0; line <= $5; ++line) {
        column = firstColumn[$2, line]
        if (((line > $3 || column >= $4) && (line < $5 || column < $6)) || (isFirst && line == $3)) {
            painted[$2, line, $8] = $7
        }
    }
    isFirst = 0
}
$1 == "branch" || $1 == "condition" { add($2, $3, $4, $1, $5, $6) }

# --- The verdict --------------------------------------------------------------------------------

END {
    endFunction()
    for (key in lastLine) {
        split(key, at, SUBSEP)
        if (emitted[key]) {
            continue
        }
        isCompilers = isConstexpr(at[1], at[2], at[3])
        compilersFunctions += isCompilers
        for (line = at[2]; line <= lastLine[key]; ++line) {
            if (isCompilers) {
                isOfCompiler[at[1], line] = 1
            } else {
                addLine(at[1], line, at[2] * 1000 + at[3], 0)
            }
        }
    }
    for (key in owner) {
        split(key, at, SUBSEP)
        add(at[1], at[2], 0, "line", "", ownersRan(key, at[2]))
    }
    for (i = 1; i <= keyCount; ++i) {
        split(keys[i], at, SUBSEP)
        file = at[1]; line = at[2] + 0; kind = at[4]
        if (isOfCompiler[file, line] || (kind == "line" && !isCode[file, line])) {
            continue
        }
        ++all[file, kind]; ++all["", kind]
        if (ran[keys[i]]) {
            ++done[file, kind]; ++done["", kind]
        } else if (kind == "line") {
            neverRan[file, line] = 1
        } else if (mark[file, line]) {
            isUsed[file, mark[file, line]] = 1
        } else if (kind == "branch") {
            miss(file, line, "the branch at column " at[3] " is never " at[5])
        } else {
            miss(file, line, "the condition at column " at[3] " was never seen to decide alone")
        }
    }
    for (f = 1; f <= fileCount; ++f) {
        file = files[f]
        speaks = 0
        for (line = 1; line <= lineCount[file]; ++line) {
            speaks = mark[file, line] ? mark[file, line] : neverRan[file, line] ? speaks : 0
            if (neverRan[file, line] && speaks) {
                isUsed[file, speaks] = 1
            } else if (neverRan[file, line]) {
                report(file, line, "never ran")
            }
            count = split(missing[file, line], each, "\n")
            for (i = 2; i <= count; ++i) {
                report(file, line, each[i])
            }
        }
        for (line = 1; line <= lineCount[file]; ++line) {
            if (mark[file, line] && !isUsed[file, mark[file, line]]) {
                report(file, mark[file, line], "the mark is out of date: all of this is covered")
            }
        }
        total += marks[file]
    }

    if (failed) {
        print ""
    }
    printf "%-38s %11s %11s %11s %7s\n", "covered of all", "lines", "branches", "conditions", "marked"
    for (f = 1; f <= fileCount; ++f) {
        if (all[files[f], "line"]) {
            row(files[f], files[f])
        }
    }
    marks[""] = total
    row("all", "")
    printf "\n%d functions that only the compiler runs are not counted.\n", compilersFunctions
    for (f = 1; f <= fileCount; ++f) {
        printMarks(files[f])
    }
    exit failed
}
