#pragma once

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

namespace platform
{

/// What tells one service from another. UTF-8; type and domain end with a dot, as "_http._tcp." and "local." do.
struct ServiceName
{
    std::string name;
    std::string type;
    std::string domain;

    bool operator==(const ServiceName &) const = default;
    bool operator<(const ServiceName &other) const
    {
        return std::tie(name, type, domain) < std::tie(other.name, other.type, other.domain);
    }
};

/// What the daemon's thread tells.
struct ServiceEvent
{
    enum class Kind
    {
        Begun,       ///< The daemon answers, and what it was asked for first is under way.
        Appeared,    ///< The service is announced on an interface.
        Vanished,    ///< It is no longer announced there.
        Resolved,    ///< The question has addresses and a port for its answer.
        NotResolved, ///< The question has no answer.
        Failed,      ///< Daemon or bus are not there, or no longer; nothing follows.
    };

    Kind kind = Kind::Failed;
    ServiceName service{};                ///< That appeared or vanished.
    int interface = 0;                    ///< The kernel's number of it.
    int protocol = 0;                     ///< The daemon's number of it.
    std::uint64_t question = 0;           ///< That is answered.
    std::vector<std::string> addresses{}; ///< Raw socket addresses, those of IPv4 first.
    int port = -1;                        ///< In host byte order.
    std::string reason{};                 ///< Why it failed, for the log.
};

/// What the daemon's thread is asked for.
struct ServiceCommand
{
    enum class Kind
    {
        Search,     ///< For services of this type in this domain.
        StopSearch, ///< What was found may still be resolved.
        Resolve,    ///< Look for addresses and port of the service.
        Forget,     ///< Nobody wants the answer of this question.
    };

    Kind kind;
    ServiceName service{};
    std::uint64_t question = 0;
};

} // namespace platform
