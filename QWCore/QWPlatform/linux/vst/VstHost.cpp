#include "VstHost.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <string_view>

namespace platform
{

namespace
{
constexpr std::intptr_t interfaceVersion = 2400;
constexpr std::intptr_t ownVersion = 1000;
constexpr std::intptr_t englishLanguage = 1;
constexpr std::intptr_t offlineLevel = 1; // "in the main thread": nothing is played live
constexpr char companyName[] = "Quorwell Engineering";
constexpr char productName[] = "QWUtilities";

constexpr std::string_view abilities[] = {"sendVstEvents", "sendVstMidiEvent", "sendVstTimeInfo"};

std::intptr_t writeText(void *buffer, const char *text)
{
    if (!buffer)
        return 0;
    std::strcpy(static_cast<char *>(buffer), text);
    return 1;
}

std::intptr_t can(const void *ability)
{
    const auto *text = static_cast<const char *>(ability);
    return text && std::find(std::begin(abilities), std::end(abilities), text) != std::end(abilities) ? 1 : 0;
}
} // namespace

std::intptr_t VstHost::callback(vst::Effect *effect, std::int32_t request, std::int32_t, std::intptr_t value,
                                void *pointer, float)
{
    static const VstHost unopened;
    auto *const opened = effect ? reinterpret_cast<VstHost *>(effect->host) : nullptr;
    const VstHost &host = opened ? *opened : unopened;
    switch (request) {
    case vst::request::version:
        return interfaceVersion;
    case vst::request::wantMidi:
    case vst::request::ioChanged: // the record is looked at whenever somebody asks
        return 1;
    case vst::request::time:
        return opened ? reinterpret_cast<std::intptr_t>(opened->transport.timeInfo(value)) : 0;
    case vst::request::sampleRate:
        return std::lround(host.sampleRate);
    case vst::request::blockSize:
        return host.blockFrames;
    case vst::request::processLevel:
        return offlineLevel;
    case vst::request::vendor:
        return writeText(pointer, companyName);
    case vst::request::product:
        return writeText(pointer, productName);
    case vst::request::vendorVersion:
        return ownVersion;
    case vst::request::canDo:
        return can(pointer);
    case vst::request::language:
        return englishLanguage;
    default: // the current id of a shell among them: 0 opens the shell itself
        return 0;
    }
}

} // namespace platform
