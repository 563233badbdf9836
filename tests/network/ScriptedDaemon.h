#pragma once

#include <QWPlatform/linux/services/ServiceExchange.h>
#include <QWPlatform/linux/services/ServiceSession.h>

#include <algorithm>
#include <condition_variable>
#include <memory>
#include <poll.h>

/// Stands for the daemon that knows what is announced: takes what it is asked for, and says what the test says. One
/// session at a time speaks to it.
class ScriptedDaemon
{
public:
    using Command = platform::ServiceCommand;
    using Event = platform::ServiceEvent;

    ~ScriptedDaemon() { waitUntilLeft(); }

    platform::ServiceSession::Daemon function()
    {
        return [state = m_state] { return [state](platform::ServiceExchange &exchange) { serve(*state, exchange); }; };
    }

    /// As the next to speak to it hears at once.
    void refuse(const std::string &reason)
    {
        const std::lock_guard lock(m_state->mutex);
        m_state->refusal = reason;
    }

    /// Says all of it at once. False when nobody listens.
    bool tell(std::vector<Event> events)
    {
        const std::lock_guard lock(m_state->mutex);
        if (!m_state->exchange)
            return false;
        m_state->exchange->publish(std::move(events));
        return true;
    }

    /// What it was asked for so far.
    std::vector<Command> commands() const
    {
        const std::lock_guard lock(m_state->mutex);
        return m_state->commands;
    }

    /// How often it was asked for something of that kind.
    std::ptrdiff_t asked(Command::Kind kind) const
    {
        const auto all = commands();
        return std::count_if(all.begin(), all.end(), [kind](const Command &command) { return command.kind == kind; });
    }

    /// How many speak to it.
    int sessions() const
    {
        const std::lock_guard lock(m_state->mutex);
        return m_state->sessions;
    }

    /// How many ever did.
    int sessionsEver() const
    {
        const std::lock_guard lock(m_state->mutex);
        return m_state->sessionsEver;
    }

    void waitUntilLeft()
    {
        std::unique_lock lock(m_state->mutex);
        m_state->left.wait(lock, [this] { return m_state->sessions == 0; });
    }

    static Event appeared(const std::string &name, int interface = 1)
    {
        return {.kind = Event::Kind::Appeared, .service = {name, "_http._tcp.", "local."}, .interface = interface};
    }

    static Event vanished(const std::string &name, int interface = 1)
    {
        return {.kind = Event::Kind::Vanished, .service = {name, "_http._tcp.", "local."}, .interface = interface};
    }

private:
    struct State
    {
        mutable std::mutex mutex;
        std::condition_variable left;
        platform::ServiceExchange *exchange = nullptr;
        std::vector<Command> commands;
        std::string refusal;
        int sessions = 0;
        int sessionsEver = 0;
    };

    static void serve(State &state, platform::ServiceExchange &exchange)
    {
        {
            const std::lock_guard lock(state.mutex);
            ++state.sessions;
            ++state.sessionsEver;
            state.exchange = &exchange;
            if (!state.refusal.empty())
                exchange.publishFailure(state.refusal);
        }
        while (takeCommands(state, exchange)) {
            pollfd waiting{.fd = exchange.descriptor(), .events = POLLIN, .revents = 0};
            ::poll(&waiting, 1, -1);
        }
        const std::lock_guard lock(state.mutex);
        --state.sessions;
        if (state.exchange == &exchange)
            state.exchange = nullptr;
        state.left.notify_all();
    }

    static bool takeCommands(State &state, platform::ServiceExchange &exchange)
    {
        const auto commands = exchange.takeCommands();
        const std::lock_guard lock(state.mutex);
        if (commands)
            state.commands.insert(state.commands.end(), commands->begin(), commands->end());
        return commands.has_value();
    }

    std::shared_ptr<State> m_state = std::make_shared<State>();
};
