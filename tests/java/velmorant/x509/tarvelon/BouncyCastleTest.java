package velmorant.x509.tarvelon;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;
import static velmorant.x509.tarvelon.Calls.bytes;
import static velmorant.x509.tarvelon.Calls.check;
import static velmorant.x509.tarvelon.Calls.handle;

import java.math.BigInteger;
import java.nio.charset.StandardCharsets;
import java.security.KeyPair;
import java.security.KeyPairGenerator;
import java.security.MessageDigest;
import java.security.Security;
import java.security.Signature;
import java.util.Date;
import org.bouncycastle.asn1.x500.X500Name;
import org.bouncycastle.cert.X509CRLHolder;
import org.bouncycastle.cert.X509CertificateHolder;
import org.bouncycastle.cert.ocsp.BasicOCSPRespBuilder;
import org.bouncycastle.cert.ocsp.CertificateID;
import org.bouncycastle.cert.ocsp.CertificateStatus;
import org.bouncycastle.cert.ocsp.OCSPRespBuilder;
import org.bouncycastle.cert.ocsp.RespID;
import org.bouncycastle.cms.CMSProcessableByteArray;
import org.bouncycastle.cms.CMSSignedData;
import org.bouncycastle.cms.CMSSignedDataGenerator;
import org.bouncycastle.cms.SignerInformation;
import org.bouncycastle.cms.jcajce.JcaSignerInfoGeneratorBuilder;
import org.bouncycastle.cms.jcajce.JcaSimpleSignerInfoVerifierBuilder;
import org.bouncycastle.jce.ECNamedCurveTable;
import org.bouncycastle.jce.provider.BouncyCastleProvider;
import org.bouncycastle.operator.ContentSigner;
import org.bouncycastle.operator.jcajce.JcaContentSignerBuilder;
import org.bouncycastle.operator.jcajce.JcaContentVerifierProviderBuilder;
import org.bouncycastle.operator.jcajce.JcaDigestCalculatorProviderBuilder;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.Test;

/**
 * BouncyCastle as the independent Java peer, with GOST R 34.10-2012 (256). Tarvelon builds a
 * certificate, a CRL and a detached CMS signature from Java and hands out the bytes to sign;
 * BouncyCastle signs them and then parses and verifies all three. The reverse: a CMS signature
 * and an OCSP response made by BouncyCastle, read field by field through Tarvelon.
 */
class BouncyCastleTest {
    static final String SIGNATURE = "GOST3411-2012-256WITHECGOST3410-2012-256";
    static final byte[] COMMON_NAME = {3, 0x55, 0x04, 0x03};
    static final byte[] GOST_2012_256_WITH_DIGEST = {8, 0x2A, (byte) 0x85, 0x03, 0x07, 0x01, 0x01, 0x03, 0x02};
    static final byte[] GOST_2012_256 = {8, 0x2A, (byte) 0x85, 0x03, 0x07, 0x01, 0x01, 0x01, 0x01};
    static final byte[] STREEBOG_256 = {8, 0x2A, (byte) 0x85, 0x03, 0x07, 0x01, 0x01, 0x02, 0x02};
    static final int[] NOT_BEFORE = {2025, 1, 1, 0, 0, 0}, NOT_AFTER = {2035, 1, 1, 0, 0, 0};
    static final byte[] CONTENT = "Подписываемый документ".getBytes(StandardCharsets.UTF_8);

    static KeyPair key;
    static byte[] certificate;

    @BeforeAll
    static void provider() throws Exception {
        Security.addProvider(new BouncyCastleProvider());
        KeyPairGenerator generator = KeyPairGenerator.getInstance("ECGOST3410-2012", "BC");
        generator.initialize(ECNamedCurveTable.getParameterSpec("Tc26-Gost-3410-12-256-paramSetA"));
        key = generator.generateKeyPair();
        certificate = buildCertificate();
    }

    static byte[] sign(byte[] toBeSigned) throws Exception {
        Signature s = Signature.getInstance(SIGNATURE, "BC");
        s.initSign(key.getPrivate());
        s.update(toBeSigned);
        return s.sign();
    }

    static long name(String commonName) {
        final long name = handle(Tarvelon::dll_CreateX509Name);
        final byte[] value = commonName.getBytes(StandardCharsets.UTF_8);
        check(Tarvelon.dll_AddX509NameEntry(name, value, value.length, 12, COMMON_NAME, 1));
        return name;
    }

    /** A self-signed certificate over BouncyCastle's key, signed by BouncyCastle. */
    static byte[] buildCertificate() throws Exception {
        final byte[] spki = key.getPublic().getEncoded();
        final byte[][] parts = new byte[3][];
        final int[][] lengths = {{64}, {256}, {64}};
        for (int i = 0; i < 3; ++i) parts[i] = new byte[lengths[i][0]];
        check(Tarvelon.dll_DecodeSubjectPublicKeyInfo(spki, spki.length, parts[0], lengths[0], parts[1], lengths[1],
            parts[2], lengths[2]));
        final long cert = handle(Tarvelon::dll_CreateCertificate);
        final long subject = name("Тарвелон и BouncyCastle");
        final byte[] serial = {0x01, 0x17};
        check(Tarvelon.dll_SetCertificateVersion(cert, 2));
        check(Tarvelon.dll_SetCertificateSerialNumber(cert, serial, serial.length));
        check(Tarvelon.dll_SetCertificateSignatureAlgorithmOidAndParameters(cert, GOST_2012_256_WITH_DIGEST, null, 0));
        check(Tarvelon.dll_SetCertificateIssuer(cert, subject));
        check(Tarvelon.dll_SetCertificateSubject(cert, subject));
        check(Tarvelon.dll_SetCertificateValidNotBefore(cert, NOT_BEFORE));
        check(Tarvelon.dll_SetCertificateValidNotAfter(cert, NOT_AFTER));
        check(Tarvelon.dll_SetCertificatePublicKeyAlgorithmOidAndParameters(cert, parts[0], parts[2], lengths[2][0]));
        check(Tarvelon.dll_SetCertificatePublicKey(cert, parts[1], lengths[1][0]));
        final byte[] signature = sign(bytes((b, n) -> Tarvelon.dll_GetCertificateToBeSignedPart(cert, b, n)));
        check(Tarvelon.dll_SetCertificateSignature(cert, signature, signature.length));
        final byte[] der = bytes((b, n) -> Tarvelon.dll_EncodeCertificate(cert, b, n));
        check(Tarvelon.dll_FreeCertificate(cert));
        check(Tarvelon.dll_FreeX509Name(subject));
        return der;
    }

    @Test
    void bouncyCastleVerifiesTheCertificate() throws Exception {
        X509CertificateHolder holder = new X509CertificateHolder(certificate);
        assertTrue(holder.isSignatureValid(new JcaContentVerifierProviderBuilder().setProvider("BC").build(key.getPublic())));
        assertEquals(new BigInteger("0117", 16), holder.getSerialNumber());
        assertEquals("CN=Тарвелон и BouncyCastle", holder.getSubject().toString());
    }

    @Test
    void bouncyCastleVerifiesTheCrl() throws Exception {
        final long crl = handle(Tarvelon::dll_CreateX509Crl);
        final long issuer = name("Тарвелон и BouncyCastle");
        final byte[] revoked = {0x42};
        check(Tarvelon.dll_SetX509CrlVersion(crl, 1));
        check(Tarvelon.dll_SetX509CrlSignatureAlgorithmOidAndParameters(crl, GOST_2012_256_WITH_DIGEST, null, 0));
        check(Tarvelon.dll_SetX509CrlIssuer(crl, issuer));
        check(Tarvelon.dll_SetX509CrlThisUpdate(crl, NOT_BEFORE));
        check(Tarvelon.dll_SetX509CrlNextUpdate(crl, NOT_AFTER));
        check(Tarvelon.dll_AddX509CrlRevokedCertificate(crl, revoked, 1, NOT_BEFORE, new int[1]));
        final byte[] signature = sign(bytes((b, n) -> Tarvelon.dll_GetX509CrlToBeSignedPart(crl, b, n)));
        check(Tarvelon.dll_SetX509CrlSignature(crl, signature, signature.length));
        final byte[] der = bytes((b, n) -> Tarvelon.dll_EncodeX509Crl(crl, b, n));
        check(Tarvelon.dll_FreeX509Crl(crl));
        check(Tarvelon.dll_FreeX509Name(issuer));
        X509CRLHolder holder = new X509CRLHolder(der);
        assertTrue(holder.isSignatureValid(new JcaContentVerifierProviderBuilder().setProvider("BC").build(key.getPublic())));
        assertEquals(BigInteger.valueOf(0x42), holder.getRevokedCertificate(BigInteger.valueOf(0x42)).getSerialNumber());
    }

    @Test
    void bouncyCastleVerifiesTheDetachedSignature() throws Exception {
        final byte[] digest = MessageDigest.getInstance("GOST3411-2012-256", "BC").digest(CONTENT);
        final int[] time = {2026, 11, 23, 10, 0, 0};
        final byte[] attributes = bytes((b, n) -> Tarvelon.dll_GetCmsSignedDataToBeSignedPart(digest, digest.length, time, b, n));
        final byte[] signature = sign(attributes);
        final byte[] message = bytes((b, n) -> Tarvelon.dll_CreateCmsFileSignature2(null, 0, digest, digest.length, time,
            STREEBOG_256, null, 0, certificate, certificate.length, certificate, new int[1], 1, GOST_2012_256, null, 0, 1, 0,
            0, signature, signature.length, null, 0, b, n));
        CMSSignedData signed = new CMSSignedData(new CMSProcessableByteArray(CONTENT), message);
        SignerInformation signer = signed.getSignerInfos().getSigners().iterator().next();
        assertTrue(signer.verify(new JcaSimpleSignerInfoVerifierBuilder().setProvider("BC")
            .build(new X509CertificateHolder(certificate))));
    }

    @Test
    void tarvelonReadsBouncyCastlesSignature() throws Exception {
        ContentSigner signer = new JcaContentSignerBuilder(SIGNATURE).setProvider("BC").build(key.getPrivate());
        CMSSignedDataGenerator generator = new CMSSignedDataGenerator();
        X509CertificateHolder holder = new X509CertificateHolder(certificate);
        generator.addSignerInfoGenerator(new JcaSignerInfoGeneratorBuilder(
            new JcaDigestCalculatorProviderBuilder().setProvider("BC").build()).build(signer, holder));
        generator.addCertificate(holder);
        final byte[] message = generator.generate(new CMSProcessableByteArray(CONTENT), true).getEncoded();

        final long info = handle(h -> Tarvelon.dll_DecodeCmsContentInfo(message, message.length, h));
        final byte[] inner = bytes((b, n) -> Tarvelon.dll_GetCmsContentInfoContent(info, b, n));
        final long sd = handle(h -> Tarvelon.dll_DecodeCmsSignedData(inner, inner.length, h));
        assertArrayEquals(CONTENT, bytes((b, n) -> Tarvelon.dll_GetCmsSignedDataContent(sd, b, n)));
        final int[] count = {0};
        check(Tarvelon.dll_GetCmsSignedDataSignerInfosCount(sd, count));
        assertEquals(1, count[0]);
        final long signerInfo = handle(h -> Tarvelon.dll_GetCmsSignedDataSignerInfo(sd, 0, h));
        final long cert = handle(h -> Tarvelon.dll_DecodeCertificate(certificate, certificate.length, h));
        assertEquals(0, Tarvelon.dll_CompareSignerInfoAndCertificate(signerInfo, cert), "the signer is our certificate");
        final byte[] digestAlgorithm = new byte[16];
        final int[] length = {digestAlgorithm.length};
        check(Tarvelon.dll_GetCmsSignerInfoDigestAlgorithmOidAndParameters(signerInfo, digestAlgorithm, length, null, new int[1]));
        assertArrayEquals(STREEBOG_256, java.util.Arrays.copyOf(digestAlgorithm, length[0]));
        assertEquals(0, Tarvelon.dll_GetBufferCmsSignatureTime(1, message, message.length, new int[6]), "signingTime read");
        check(Tarvelon.dll_FreeCertificate(cert));
        check(Tarvelon.dll_FreeCmsSignedData(sd));
        check(Tarvelon.dll_FreeCmsContentInfo(info));
    }

    @Test
    void tarvelonReadsBouncyCastlesOcspResponse() throws Exception {
        X509CertificateHolder holder = new X509CertificateHolder(certificate);
        CertificateID id = new CertificateID(new JcaDigestCalculatorProviderBuilder().setProvider("BC").build()
            .get(CertificateID.HASH_SHA1), holder, BigInteger.valueOf(0x117));
        BasicOCSPRespBuilder builder = new BasicOCSPRespBuilder(new RespID(new X500Name("CN=OCSP")));
        builder.addResponse(id, CertificateStatus.GOOD);
        ContentSigner signer = new JcaContentSignerBuilder(SIGNATURE).setProvider("BC").build(key.getPrivate());
        final byte[] der = new OCSPRespBuilder().build(OCSPRespBuilder.SUCCESSFUL,
            builder.build(signer, new X509CertificateHolder[] {holder}, new Date())).getEncoded();

        final long response = handle(h -> Tarvelon.dll_DecodeOcspResponse(der, der.length, h));
        final int[] value = {-1};
        check(Tarvelon.dll_GetOcspResponseStatus(response, value));
        assertEquals(0, value[0], "successful");
        final byte[] type = new byte[16];
        final int[] typeLength = {type.length};
        final int[] basicLength = {0};
        check(Tarvelon.dll_GetOcspResponseBytes(response, type, typeLength, null, basicLength));
        final byte[] basicDer = new byte[basicLength[0]];
        check(Tarvelon.dll_GetOcspResponseBytes(response, type, typeLength, basicDer, basicLength));
        final long basic = handle(h -> Tarvelon.dll_DecodeOcspBasicResponse(basicDer, basicDer.length, h));
        check(Tarvelon.dll_GetOcspBasicResponseSingleResponsesCount(basic, value));
        assertEquals(1, value[0]);
        final long single = handle(h -> Tarvelon.dll_GetOcspBasicResponseSingleResponse(basic, 0, h));
        check(Tarvelon.dll_GetOcspSingleResponseCertStatus(single, value));
        assertEquals(0, value[0], "good");
        check(Tarvelon.dll_FreeOcspBasicResponse(basic));
        check(Tarvelon.dll_FreeOcspResponse(response));
    }
}
