# SPDX-License-Identifier: MIT
# Turns the C++ examples of a page into one source. A block with a main() stays as it is; any other becomes the body of
# a function of a class derived from Page, which the page's header declares together with what the examples assume.
# awk -v page=PATH -v header=NAME -f examples.awk PAGE
BEGIN { printf "#include \"%s\"\n", header }

/^```cpp$/ { inside = 1; first = FNR + 1; count++; body = ""; whole = 0; next }

/^```$/ && inside {
    inside = 0
    if (whole) {
        printf "#line %d \"%s\"\n%s", first, page, body
    } else {
        printf "struct Example%d : Page { void run(); };\nvoid Example%d::run()\n{\n", count, count
        printf "#line %d \"%s\"\n%s}\n", first, page, body
    }
    next
}

inside {
    if ($0 ~ /^int main\(/)
        whole = 1
    body = body $0 "\n"
}
