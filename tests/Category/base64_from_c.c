/* SPDX-License-Identifier: MIT */
/* The header and the functions as a C program meets them. */
#include <KXFoundation/Category/Base64.h>

#include <stdlib.h>
#include <string.h>

int main(void)
{
    size_t textLength = 0;
    size_t bytesLength = 0;
    char *text = NewBase64Encode("C99", 3, true, &textLength);
    void *bytes = NewBase64Decode(text, (size_t)-1, &bytesLength);
    const bool right = textLength == 4 && strcmp(text, "Qzk5") == 0 && bytesLength == 3 && memcmp(bytes, "C99", 3) == 0;
    free(text);
    free(bytes);
    return right ? 0 : 1;
}
