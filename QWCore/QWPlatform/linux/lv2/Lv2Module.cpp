#include "Lv2Access.h"
#include "Lv2Unit.h"

namespace
{
class Lilv : public platform::Lv2Access
{
public:
    std::unique_ptr<platform::AudioPlugin> open(const QString &path, const QString &uri, QString *error) override
    {
        return platform::Lv2Unit::open(path, uri, error);
    }
};
} // namespace

extern "C" [[gnu::visibility("default")]] platform::Lv2Access *qw_lv2_access()
{
    static Lilv lilv;
    return &lilv;
}
