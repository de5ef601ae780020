#pragma once

#include <string>
#include <string_view>

/// Whether something may be fetched from here: HTTPS from any host, with no user's name in the address. Plain
/// HTTP is for tests and comes from 127.0.0.1 alone.
bool IsFetchable(const std::string& url);

/// Whether a fetchable address is that of a server on this machine, which needs no network.
bool IsOnThisMachine(const std::string& url);

/// The path of an address from the bytes of a name: everything but unreserved characters and "/" as "%XX".
std::string EncodePath(std::string_view name);
