// A validator that only writes a fixed hand-off file, to the path in its first argument.
#include <fcntl.h>
#include <string_view>
#include <unistd.h>

int main(int, char **argv)
{
    constexpr std::string_view handOff =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<plist version=\"1.0\"><dict><key>isInstrument</key><false/></dict></plist>\n";
    const int file = open(argv[1], O_WRONLY | O_CREAT | O_TRUNC, 0644);
    return write(file, handOff.data(), handOff.size()) < 0;
}
