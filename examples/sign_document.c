/* Signing a document the external way: the library's main job.
 *
 * The library computes no digest and no signature. Your crypto provider hashes the document, signs
 * the signed attributes the library hands out, and the library assembles the CMS message around the
 * signature. The two calls must be given the same digest and signing time, so that the library
 * rebuilds exactly the attributes that were signed.
 *
 *   sign_document attrs   DIGEST TIME                           > signed_attributes.der
 *   sign_document message DOCUMENT DIGEST TIME CERT SIGNATURE   > document.p7s
 *
 * DIGEST is the raw GOST R 34.11-2012 (256) hash of DOCUMENT, TIME the signing time as
 * YYYYMMDDhhmmss (UTC), CERT the signer's certificate (DER), SIGNATURE the GOST R 34.10-2012 (256)
 * signature over signed_attributes.der. The message is attached: it carries DOCUMENT. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <tarvelon/tarvelon.h>

/* A whole file in a malloc'd buffer; exits on failure. */
static uint8_t* Slurp(const char* path, uint32_t* len) {
    FILE* f = fopen(path, "rb");
    if (!f) {
        fprintf(stderr, "sign_document: cannot open %s\n", path);
        exit(2);
    }
    size_t size = 0, room = 1 << 16;
    uint8_t* data = malloc(room);
    for (size_t n; data && (n = fread(data + size, 1, room - size, f)) > 0;) {
        size += n;
        if (size == room) data = realloc(data, room *= 2);
    }
    fclose(f);
    if (!data) exit(2);
    *len = (uint32_t)size;
    return data;
}

static LibraryTime ParseTime(const char* text) {
    LibraryTime t = {0};
    if (strlen(text) != 14 || sscanf(text, "%4u%2u%2u%2u%2u%2u", &t.year, &t.month, &t.day, &t.hour, &t.minute,
                                     &t.second) != 6) {
        fprintf(stderr, "sign_document: time %s is not YYYYMMDDhhmmss\n", text);
        exit(2);
    }
    return t;
}

/* Every call follows the size protocol: a null buffer asks for the size, then the bytes are written. */
static int Emit(uint32_t rc, const uint8_t* out, uint32_t outLen, const char* what) {
    if (rc != 0) {
        uint32_t line = 0;
        const char* module = GetLastFileErrorAsn(&line);
        fprintf(stderr, "sign_document: %s failed with status %u (%s:%u)\n", what, rc, module, line);
        return 1;
    }
    return fwrite(out, 1, outLen, stdout) == outLen ? 0 : 1;
}

int main(int argc, char** argv) {
    if (argc == 4 && strcmp(argv[1], "attrs") == 0) {
        uint32_t digestLen = 0, len = 0;
        uint8_t* digest = Slurp(argv[2], &digestLen);
        const LibraryTime time = ParseTime(argv[3]);
        /* contentType, signingTime and messageDigest as a DER SET: the bytes the provider signs */
        uint32_t rc = GetCmsSignedDataToBeSignedPart(digest, digestLen, &time, NULL, &len);
        uint8_t* attrs = malloc(len ? len : 1);
        if (rc == 0) rc = GetCmsSignedDataToBeSignedPart(digest, digestLen, &time, attrs, &len);
        const int status = Emit(rc, attrs, len, "GetCmsSignedDataToBeSignedPart");
        free(attrs);
        free(digest);
        return status;
    }
    if (argc == 7 && strcmp(argv[1], "message") == 0) {
        uint32_t docLen = 0, digestLen = 0, certLen = 0, sigLen = 0, len = 0;
        uint8_t* doc = Slurp(argv[2], &docLen);
        uint8_t* digest = Slurp(argv[3], &digestLen);
        const LibraryTime time = ParseTime(argv[4]);
        uint8_t* cert = Slurp(argv[5], &certLen);
        uint8_t* signature = Slurp(argv[6], &sigLen);
        uint8_t digestOid[16], signatureOid[16];
        uint32_t digestOidLen = sizeof digestOid, signatureOidLen = sizeof signatureOid;
        ConvertStringToOid("1.2.643.7.1.1.2.2", digestOid, &digestOidLen);        /* GOST R 34.11-2012 256 */
        ConvertStringToOid("1.2.643.7.1.1.1.1", signatureOid, &signatureOidLen);  /* GOST R 34.10-2012 256 */
        /* The signer's certificate travels in the message, so a verifier needs only the CA. */
        const uint8_t* certs[] = {cert};
        const uint32_t certLens[] = {certLen};
        uint8_t* message = NULL;
        uint32_t rc = 0;
        for (int pass = 0; pass < 2 && rc == 0; ++pass) {
            rc = CreateCmsFileSignature2(doc, docLen, digest, digestLen, &time, digestOid, NULL, 0, cert, certLen,
                                         certs, certLens, 1, signatureOid, NULL, 0, 1, NULL, 0, signature, sigLen,
                                         NULL, 0, message, &len);
            if (pass == 0 && rc == 0) message = malloc(len);
        }
        const int status = Emit(rc, message, len, "CreateCmsFileSignature2");
        free(message);
        free(signature);
        free(cert);
        free(digest);
        free(doc);
        return status;
    }
    fprintf(stderr,
            "usage: sign_document attrs DIGEST TIME > signed_attributes.der\n"
            "       sign_document message DOCUMENT DIGEST TIME CERT SIGNATURE > document.p7s\n");
    return 2;
}
