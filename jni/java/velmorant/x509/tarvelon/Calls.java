package velmorant.x509.tarvelon;

import java.nio.charset.Charset;
import java.util.Arrays;

/**
 * What every Java caller of {@link Tarvelon} writes otherwise: a status turned into an exception
 * naming where the library failed, the size protocol run to get a getter's bytes, and the
 * library's code page 1251 display texts as Java strings.
 */
public final class Calls {
    private static final Charset CP1251 = Charset.forName("windows-1251");

    private Calls() {}

    /** A getter with the size protocol: a null buffer asks for the size into length[0]. */
    @FunctionalInterface
    public interface Getter {
        int call(byte[] buffer, int[] length);
    }

    /** Throws unless the status is 0. */
    public static void check(int status) {
        if (status == 0) return;
        final int[] line = {0};
        final String module = Tarvelon.dll_GetLastFileErrorAsn(line);
        throw new TarvelonException(status, module, line[0]);
    }

    /** The bytes a getter writes: the size first, then the bytes. */
    public static byte[] bytes(Getter getter) {
        final int[] length = {0};
        check(getter.call(null, length));
        final byte[] buffer = new byte[length[0]];
        check(getter.call(buffer, length));
        return length[0] == buffer.length ? buffer : Arrays.copyOf(buffer, length[0]);
    }

    /** A display text (code page 1251 bytes) as a string. */
    public static String text(Getter getter) {
        return new String(bytes(getter), CP1251);
    }

    /** A handle made by a call that stores it in element 0. */
    @FunctionalInterface
    public interface Maker {
        int call(long[] handle);
    }

    public static long handle(Maker maker) {
        final long[] handle = {0};
        check(maker.call(handle));
        return handle[0];
    }
}
