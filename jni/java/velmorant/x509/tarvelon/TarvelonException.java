package velmorant.x509.tarvelon;

/** A status other than 0 from a native call, with the module and line that recorded it. */
public class TarvelonException extends RuntimeException {
    private static final long serialVersionUID = 1L;
    private final int status;

    public TarvelonException(int status, String module, int line) {
        super("status " + status + (module != null ? " at " + module + ":" + line : ""));
        this.status = status;
    }

    /** The library's status code. */
    public int status() {
        return status;
    }
}
