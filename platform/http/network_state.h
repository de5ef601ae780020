#pragma once

/// Whether this machine is on a network: an interface other than the loopback is up and has an address that
/// reaches further than its cable. Asks the kernel only, never the network. True if the kernel doesn't tell.
bool HasNetwork();
