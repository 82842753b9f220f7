# SPDX-License-Identifier: MIT
# Turns the C++ examples of a page into one source. A block with a main() stays as it is; any other becomes the body of
# a function of a class derived from Page, which the page's header declares together with what the examples assume.
# Includes go to the top: those of the page, not of its header, are to suffice for the library's part of the examples.
# awk -v page=PATH -v header=NAME -f examples.awk PAGE
/^```cpp$/ { inside = 1; first = FNR + 1; count++; body = ""; whole = 0; next }

/^```$/ && inside {
    inside = 0
    body = sprintf("#line %d \"%s\"\n%s", first, page, body)
    if (!whole)
        body = sprintf("struct Example%d : Page { void run(); };\nvoid Example%d::run()\n{\n%s}\n", count, count, body)
    bodies = bodies body
    next
}

inside && /^#include / {
    includes = includes sprintf("#line %d \"%s\"\n%s\n", FNR, page, $0)
    body = body "\n"
    next
}

inside {
    if ($0 ~ /^int main\(/)
        whole = 1
    body = body $0 "\n"
}

END { printf "%s#include \"%s\"\n%s", includes, header, bodies }
