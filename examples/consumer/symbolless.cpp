#include <cstdio>
#include <cstring>
#include <link.h>

// Prints the frameworks that are mapped although this program names none of their symbols.
int main()
{
    dl_iterate_phdr(
        [](dl_phdr_info *info, std::size_t, void *) {
            const char *slash = std::strrchr(info->dlpi_name, '/');
            if (slash && std::strncmp(slash, "/libQW", 6) == 0)
                std::puts(slash + 1);
            return 0;
        },
        nullptr);
    return 0;
}
