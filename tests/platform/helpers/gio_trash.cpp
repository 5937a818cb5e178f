// Puts a file into the trash as desktop programs do: gio_trash PATH. Prints the reason when that fails.
#include <gio/gio.h>

#include <cstdio>

int main(int count, char** arguments)
{
    if (count != 2)
        return 2;
    GFile* file = g_file_new_for_path(arguments[1]);
    GError* error = nullptr;
    const bool done = g_file_trash(file, nullptr, &error) != 0;
    if (!done) {
        std::printf("%s", error->message);
        g_error_free(error);
    }
    g_object_unref(file);
    return done ? 0 : 1;
}
