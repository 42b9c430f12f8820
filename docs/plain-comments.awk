# Doxygen's view of a header, whose comments are plain ones:
#
#   the comment at the top                  the file's
#   "// text" before declarations           the comment of each of them, down to the next empty line
#   "// text" after one                     ///< text
#   a table, which is indented and in a     a block that is shown as it is
#   paragraph of its own

function escaped(text)
{
    gsub(/[\\<>%@#]/, "\\\\&", text)
    return text
}

function is_comment(line)
{
    return line ~ /^ *\/\//
}

# Prints the comment that begins at line i; the number of the line after it.
function comment(i, text, in_table, alone)
{
    for (alone = 1; is_comment(lines[i]); ++i) {
        text = lines[i]
        sub(/^ *\/\//, "", text)
        if (text ~ /clang-format o/)
            continue
        if (text ~ /^   +[^ ]/ && (in_table || (alone && text !~ /^ +- /))) {
            if (!in_table)
                print "///\n/// ~~~{.unparsed}" # which Doxygen overlooks in the first line
            in_table = 1
            print "///" text
            continue
        }
        if (in_table)
            print "/// ~~~"
        in_table = 0
        alone = text ~ /^ *$/
        print "///" escaped(text)
    }
    if (in_table)
        print "/// ~~~"
    return i
}

# The line after the declarations that begin at line i: at an empty line, a comment or a second member
# that overrides or can be overridden, outside of all bodies, or where the scope ends. `declarations`
# counts them.
function declarations_end(i, depth, line)
{
    declarations = 0
    for (; i <= count; ++i) {
        line = lines[i]
        if (depth == 0 && (line ~ /^ *$/ || is_comment(line) || line ~ /^ *}/ || line ~ /^[a-z ]+:$/))
            break
        if (depth == 0 && declarations > 0 && line ~ /virtual|override|~/)
            break
        depth += gsub(/{/, "{", line) - gsub(/}/, "}", line)
        declarations += depth == 0 && line ~ /[;}]( *\/\/.*)?$/
    }
    return i
}

function declaration(line)
{
    # Not within a text, which has no blank after its slashes.
    if (!is_comment(line) && match(line, / \/\/ /))
        line = substr(line, 1, RSTART) "///< " escaped(substr(line, RSTART + 4))
    print line
}

{ lines[++count] = $0 }

END {
    print "/// \\file"
    for (i = comment(1); i <= count;) {
        if (!is_comment(lines[i])) {
            declaration(lines[i++])
            continue
        }
        for (first = i; is_comment(lines[first]); ++first)
            ;
        last = lines[first] ~ /^ *(class|struct|enum|namespace)/ ? first : declarations_end(first)
        grouped = last > first && declarations > 1
        if (grouped)
            print "///@{"
        i = comment(i)
        while (i < last)
            declaration(lines[i++])
        if (grouped)
            print "///@}"
    }
}
