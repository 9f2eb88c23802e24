# From the text of llvm-cov show, tab-separated: whether each condition of each decision was seen to
# decide it alone, instance by instance of a template. Conditions that are constants there are left out.

BEGIN { OFS = "\t" }

/^\/.*:$/ {
    file = substr($0, length(root) + 2)
    sub(/:$/, "", file)
}

# "Condition C2 --> (14:19)", and later "C2-Pair: covered".
/Condition C[0-9]+ --> \([0-9]+:[0-9]+\)/ {
    name = $0
    sub(/.*Condition /, "", name)
    sub(/ .*/, "", name)
    place[name] = $0
    sub(/.*\(/, "", place[name])
    sub(/\).*/, "", place[name])
}
/C[0-9]+-Pair: (covered|not covered)/ {
    name = $0
    sub(/-Pair.*/, "", name)
    sub(/.*C/, "C", name)
    split(place[name], at, ":")
    print "condition", file, at[1], at[2], "alone", $0 ~ /-Pair: covered/ ? 1 : 0
}
