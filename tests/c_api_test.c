/* The public header seen from C11: records, constants and a few calls through the shared object. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "tarvelon/tarvelon.h"

#define CHECK(cond)                                              \
    do {                                                         \
        if (!(cond)) {                                           \
            fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, #cond); \
            return 1;                                            \
        }                                                        \
    } while (0)

static const Asn1Descriptor kInteger = {ASN1_CLASS_UNIVERSAL, ASN1_PRIMITIVE_FORM, 0, ASN1_INTEGER, -1, 0, NULL, 0, NULL};

int main(void) {
    uint8_t packed[32];
    uint32_t size = sizeof packed;
    char text[64];
    uint32_t textSize = sizeof text;
    CHECK(ConvertStringToOid("1.2.643.7.1.1.1.1", packed, &size) == TV_OK);
    CHECK(ConvertOidToString(packed, text, &textSize) == TV_OK);
    CHECK(strcmp(text, "1.2.643.7.1.1.1.1") == 0);

    Asn1Primitive* number = AllocAsn1Integer(128);
    CHECK(number != NULL);
    uint8_t* der = NULL;
    uint32_t derLen = 0;
    CHECK(Asn1Encode(number, &kInteger, &der, &derLen) == TV_OK);
    CHECK(derLen == 4 && memcmp(der, "\x02\x02\x00\x80", 4) == 0);
    free(der);
    FreeAsn1Object(&kInteger, number);

    void* decoded = NULL;
    uint32_t consumed = 0;
    CHECK(Asn1DecodeItem((const uint8_t*)"\x02\x01\x00\x80", 4, &kInteger, &decoded, &consumed) == TV_OK);
    CHECK(consumed == 3);
    uint8_t value[4];
    CHECK(GetAsn1Int32((const Asn1Primitive*)decoded, value) == TV_OK && value[0] == 0);
    FreeAsn1Object(&kInteger, decoded);

    uint32_t line = 0;
    CHECK(Asn1DecodeItem((const uint8_t*)"\x02\x00", 2, &kInteger, &decoded, &consumed) == TV_ERR_NOT_DER);
    const char* module = GetLastFileErrorAsn(&line);
    CHECK(module != NULL && strcmp(module, "tarvelon/Asn1Codec.cpp") == 0 && line > 0);
    printf("C API: ok\n");
    return 0;
}
