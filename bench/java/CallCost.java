import java.nio.file.Files;
import java.nio.file.Path;
import velmorant.x509.tarvelon.Tarvelon;

/**
 * What the Java binding adds to a call: a certificate's serial number read into a byte[] with its
 * int[] length, timed from Java; BM_SerialNumberFromC times the same call from C in the same
 * `make bench` run. The best of several rounds, after a warm-up that lets the JIT compile the loop.
 */
public final class CallCost {
    public static void main(String[] args) throws Exception {
        final byte[] der = Files.readAllBytes(Path.of(args[0]));
        final long[] handle = {0};
        if (Tarvelon.dll_DecodeCertificate(der, der.length, handle) != 0) throw new IllegalStateException("decode");
        final byte[] serial = new byte[32];
        final int[] length = {0};
        final int calls = 2_000_000;
        double best = Double.MAX_VALUE;
        int sink = 0;
        for (int round = 0; round < 8; ++round) {
            final long start = System.nanoTime();
            for (int i = 0; i < calls; ++i) sink += Tarvelon.dll_GetCertificateSerialNumber(handle[0], serial, length);
            best = Math.min(best, (System.nanoTime() - start) / (double) calls);
        }
        Tarvelon.dll_FreeCertificate(handle[0]);
        System.out.printf("JavaSerialNumberViaJni %.1f ns per call (status sum %d)%n", best, sink);
    }
}
