package velmorant.x509.tarvelon;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNotEquals;

import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.security.MessageDigest;
import java.util.Arrays;
import java.util.stream.Stream;
import org.junit.jupiter.api.AfterAll;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.Arguments;
import org.junit.jupiter.params.provider.MethodSource;

/**
 * The binding's rules, one row per parameter kind: a missing or short out array and an input array
 * shorter than its stated length give 49 without the call (the out value stays as it was), a null
 * buffer asks for the size, and results are copied back. Then the shapes made by hand and the
 * conversion of Java text to code page 1251 for paths.
 */
class BindingTest {
    static final int REJECTED = 49;
    static final Path FIXTURES = Path.of(System.getProperty("tarvelon.fixtures"));
    static long cert;
    static byte[] certDer;

    @BeforeAll
    static void decode() throws IOException {
        certDer = Files.readAllBytes(FIXTURES.resolve("pki/ee_rsa.der"));
        long[] handle = {0};
        assertEquals(0, Tarvelon.dll_DecodeCertificate(certDer, certDer.length, handle));
        cert = handle[0];
    }

    @AfterAll
    static void free() {
        Tarvelon.dll_FreeCertificate(cert);
    }

    /** A call of one kind with its out array in three states; what it returns and what it left. */
    interface Call {
        int run(Object outArray);
    }

    static Stream<Arguments> kinds() throws Exception {
        final byte[] sha1 = MessageDigest.getInstance("SHA-1").digest(certDer);
        return Stream.of(
            // kind, call, too short, enough, what enough holds afterwards; a null record passes a null
            // pointer (the function's own 32), every other null out array is rejected
            Arguments.of("handle out long[]", (Call) a -> Tarvelon.dll_CreateCmsSignedData((long[]) a),
                new long[0], new long[] {0}, null),
            Arguments.of("out int[]", (Call) a -> Tarvelon.dll_GetCertificateVersion(cert, (int[]) a),
                new int[0], new int[] {-1}, new int[] {2}),
            Arguments.of("out byte[20]", (Call) a -> Tarvelon.dll_sha1(certDer, certDer.length, (byte[]) a),
                new byte[19], new byte[20], sha1),
            Arguments.of("record int[]", (Call) a -> Tarvelon.dll_GetCertificateValidNotBefore(cert, (int[]) a),
                new int[5], new int[6], null),
            Arguments.of("out length int[]", (Call) a -> Tarvelon.dll_GetCertificateSerialNumber(cert, null, (int[]) a),
                new int[0], new int[] {-1}, new int[] {8}));
    }

    @ParameterizedTest(name = "{0}")
    @MethodSource("kinds")
    void shortOutArraysAreRejectedAndResultsCopiedBack(String kind, Call call, Object tooShort, Object enough,
                                                       Object expected) {
        assertEquals(kind.startsWith("record") ? 32 : REJECTED, call.run(null), "null");
        final Object untouched = copy(tooShort);
        assertEquals(REJECTED, call.run(tooShort), "short");
        assertEquals(Arrays.deepToString(new Object[] {untouched}), Arrays.deepToString(new Object[] {tooShort}));
        assertEquals(0, call.run(enough));
        if (expected != null) {
            assertEquals(Arrays.deepToString(new Object[] {expected}), Arrays.deepToString(new Object[] {enough}));
        } else {  // a handle, a time: something was stored in element 0
            assertNotEquals(0L, enough instanceof long[] l ? l[0] : ((int[]) enough)[0]);
        }
    }

    static Object copy(Object array) {
        if (array instanceof long[] l) return l.clone();
        if (array instanceof int[] i) return i.clone();
        return ((byte[]) array).clone();
    }

    @Test
    void outputBufferAndItsLength() {
        int[] length = {-1};
        assertEquals(0, Tarvelon.dll_GetCertificateSerialNumber(cert, null, length), "null buffer: the size");
        assertEquals(8, length[0]);
        byte[] small = new byte[7];
        assertEquals(REJECTED, Tarvelon.dll_GetCertificateSerialNumber(cert, small, length));
        assertEquals(8, length[0]);
        assertArrayEquals(new byte[7], small, "nothing written into a short buffer");
        byte[] room = new byte[8];
        assertEquals(REJECTED, Tarvelon.dll_GetCertificateSerialNumber(cert, room, new int[0]));
        assertArrayEquals(new byte[8], room, "not called without a length");
        assertEquals(0, Tarvelon.dll_GetCertificateSerialNumber(cert, room, length));
        assertArrayEquals(new byte[] {0x0E, (byte) 0xE0, 0, 0, 0, 0, 0, 1}, room);
    }

    @Test
    void inputBytesShorterThanTheirLengthAreRejected() {
        long[] handle = {42};
        assertEquals(REJECTED, Tarvelon.dll_DecodeCertificate(certDer, certDer.length + 1, handle));
        assertEquals(42, handle[0], "not called");
        assertEquals(32, Tarvelon.dll_DecodeCertificate(null, 5, handle), "null passes a null pointer");
        byte[] oid = {9, 0x2A, (byte) 0x86, 0x48, (byte) 0x86, (byte) 0xF7, 0x0D, 0x01, 0x07, 0x02};
        long[] info = {0};
        assertEquals(0, Tarvelon.dll_CreateCmsContentInfo(info));
        assertEquals(0, Tarvelon.dll_SetCmsContentInfoTypeOid(info[0], oid), "a packed OID carries its length");
        byte[] back = new byte[10];
        assertEquals(0, Tarvelon.dll_GetCmsContentInfoTypeOid(info[0], back, new int[1]));
        assertArrayEquals(oid, back);
        assertEquals(0, Tarvelon.dll_FreeCmsContentInfo(info[0]));
    }

    @Test
    void versionBannerReplacesTheBufferAndTheLastErrorNamesItsModule() {
        StringBuffer text = new StringBuffer("previous contents");
        assertEquals(0, Tarvelon.dll_GetVersionInfo(text));
        assertEquals("Tarvelon v1.0 (64bit) 05/02/2019 (R.3729) (c) The Tarvelon developers", text.toString());
        assertEquals(32, Tarvelon.dll_GetCertificateVersion(0, new int[1]));
        int[] line = {0};
        assertEquals("tarvelon/Certificate.cpp", Tarvelon.dll_GetLastFileErrorAsn(line));
        assertNotEquals(0, line[0]);
        assertEquals("tarvelon/Certificate.cpp", Tarvelon.dll_GetLastFileErrorAsn(null));
    }

    @Test
    void displayTextsAndFailuresThroughTheConvenienceCalls() {
        // The certificate's display text: its serial is not printable, so the subject's common name.
        assertEquals("Иванов Иван Иванович", Calls.text((b, n) -> Tarvelon.dll_GetCertificateCN(cert, b, n)));
        TarvelonException e = org.junit.jupiter.api.Assertions.assertThrows(TarvelonException.class,
            () -> Calls.bytes((b, n) -> Tarvelon.dll_GetCertificateSerialNumber(0, b, n)));
        assertEquals(32, e.status());
        assertNotEquals(-1, e.getMessage().indexOf("tarvelon/Certificate.cpp:"));
    }

    /** Paths reach the library in code page 1251: a file named by that byte is found by its letter. */
    @ParameterizedTest(name = "{0}")
    @MethodSource("letters")
    void pathsAreConvertedToCodePage1251(String letter, int cp1251, @TempDir Path dir) throws Exception {
        Path signed = FIXTURES.resolve("cms/signed_rsa.der");
        // Java would write the name in UTF-8, so the shell makes it with the single byte.
        final String script = "n=$(printf %x \"$3\"); cp \"$1\" \"$2/$(printf \"\\\\x$n\").p7s\"";
        Process p = new ProcessBuilder("bash", "-c", script, "-", signed.toString(), dir.toString(),
            Integer.toString(cp1251)).inheritIO().start();
        assertEquals(0, p.waitFor());
        int[] time = new int[6];
        assertEquals(0, Tarvelon.dll_GetCmsSignatureTime(1, dir + "/" + letter + ".p7s", time), letter);
        assertEquals(12, Tarvelon.dll_GetCmsSignatureTime(1, dir + "/" + letter + letter + ".p7s", time));
    }

    static Stream<Arguments> letters() {
        return Stream.of(Arguments.of("Ё", 0xA8), Arguments.of("ё", 0xB8), Arguments.of("Є", 0xAA), Arguments.of("ї", 0xBF),
            Arguments.of("Ў", 0xA1), Arguments.of("№", 0xB9), Arguments.of("°", 0xB0), Arguments.of("Ж", 0xC6),
            Arguments.of("я", 0xFF));
    }

    @Test
    void createCmsFileSignature2TakesOneFurtherCertificate() {
        byte[] digest = new byte[32];
        int[] time = {2025, 3, 5, 6, 7, 8};
        byte[] sha256 = {9, 0x60, (byte) 0x86, 0x48, 0x01, 0x65, 0x03, 0x04, 0x02, 0x01};
        byte[] rsa = {9, 0x2A, (byte) 0x86, 0x48, (byte) 0x86, (byte) 0xF7, 0x0D, 0x01, 0x01, 0x01};
        byte[] signature = new byte[256];
        int[] certLength = {0};
        int[] length = {0};
        assertEquals(0, Tarvelon.dll_CreateCmsFileSignature2(null, 0, digest, 32, time, sha256, null, 0, certDer,
            certDer.length, certDer, certLength, 1, rsa, null, 0, 1, 0, 0, signature, 256, null, 0, null, length));
        assertEquals(certDer.length, certLength[0], "the whole array is the certificate");
        byte[] message = new byte[length[0]];
        assertEquals(0, Tarvelon.dll_CreateCmsFileSignature2(null, 0, digest, 32, time, sha256, null, 0, certDer,
            certDer.length, certDer, certLength, 1, rsa, null, 0, 1, 0, 0, signature, 256, null, 0, message, length));
        assertEquals(REJECTED, Tarvelon.dll_CreateCmsFileSignature2(null, 0, digest, 32, time, sha256, null, 0, certDer,
            certDer.length, certDer, new int[0], 1, rsa, null, 0, 1, 0, 0, signature, 256, null, 0, message, length));
        String text = new String(message, StandardCharsets.ISO_8859_1);
        assertNotEquals(-1, text.indexOf(new String(certDer, StandardCharsets.ISO_8859_1)), "the certificate is stored");
    }
}
