#pragma once

/// Has this process get SIGTERM when the host ends; it ends at once when that has gone already. A validator that
/// someone starts by hand takes that one for the host.
void followHost();

/// Whether the host is still there. What a validator leaves for one that has gone would be taken for another plug-in's.
bool isHostThere();
