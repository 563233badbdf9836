#pragma once

/// What a test plug-in can do; chosen by the definition BEHAVIOUR. Not every kind of plug-in knows every one.
enum class Behaviour
{
    Good,
    Instrument,
    Generator,
    MusicEffect,
    FixedBlocks,
    Accumulating,
    Shell,
    Asking,
    Refusing,
    NeedsMore,
    NoEntry,
    CrashAtLoad,
    CrashAtOpen,
    CrashAtInstantiate,
    CrashAtClose,
    CrashAtFirstClose,
    KilledAtFirst,
    Exiting,
    ExitingAtFirst,
    Stopping,
    Greedy,
    Forking,
    ForkingAndHanging,
    Threading,
    Printing,
    Hanging,
    NotFinite,
    NotFiniteAtFirst,
    WrongCounts,
    LongNames
};

constexpr Behaviour behaviour = Behaviour::BEHAVIOUR;

/// What the plug-in does when it is opened: crash, exit, print, hang, or nothing.
void misbehaveAtOpen();

/// What it does when it is closed.
void misbehaveAtClose();

/// Whether its next sample is not finite.
bool isNoisy();

/// Ends the process with a segmentation fault.
[[noreturn]] void crash();
