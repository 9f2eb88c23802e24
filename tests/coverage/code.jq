# From llvm-cov's export, tab-separated: every function, whether the profile knows it ($emitted holds
# those names, the others have no code in the program), and behind it its regions of code and the
# outcomes of its branches. Paths are relative to $root.
($emitted | split("\n") | map({key: ., value: 1}) | from_entries) as $known |
def ran: if . > 0 then 1 else 0 end;
def path: ltrimstr($root + "/");
# What llvm-cov calls them.
0 as $code | 2 as $skipped |
.data[0].functions[] |
[.filenames[] | path] as $files |
(.regions[0] as [$line, $column, $lastLine, $lastColumn, $count, $file] |
    ["function", $files[$file], $line, $column, $lastLine, ($known[.name] // 0)]),
(.regions[] as [$line, $column, $lastLine, $lastColumn, $count, $file, $expanded, $kind] |
    select($kind == $code or $kind == $skipped) |
    ["region", $files[$file], $line, $column, $lastLine, $lastColumn,
        (if $kind == $skipped then "" else ($count | ran) end), $file]),
(.branches[] as [$line, $column, $lastLine, $lastColumn, $true, $false, $file] |
    ["branch", $files[$file], $line, $column, "true", ($true | ran)],
    ["branch", $files[$file], $line, $column, "false", ($false | ran)]) |
@tsv
