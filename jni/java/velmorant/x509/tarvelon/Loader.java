package velmorant.x509.tarvelon;

/**
 * Loads libtarvelon.so once, before the first native call: from the path in the system property
 * {@code tarvelon.library} when it is set, else by name from {@code java.library.path}.
 */
final class Loader {
    private Loader() {}

    static void load() {
        final String path = System.getProperty("tarvelon.library");
        if (path != null && !path.isEmpty()) {
            System.load(path);
        } else {
            System.loadLibrary("tarvelon");
        }
    }
}
