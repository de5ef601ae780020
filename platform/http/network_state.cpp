#include "platform/http/network_state.h"

#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>

#include <cstring>

namespace {

bool ReachesFurther(const sockaddr* address) {
    if (address == nullptr) return false;
    if (address->sa_family == AF_INET) return true;
    if (address->sa_family != AF_INET6) return false;
    sockaddr_in6 v6;
    std::memcpy(&v6, address, sizeof v6);
    return !IN6_IS_ADDR_LINKLOCAL(&v6.sin6_addr);
}

}  // namespace

bool HasNetwork() {
    ifaddrs* first = nullptr;
    if (getifaddrs(&first) != 0) return true;
    bool found = false;
    for (const ifaddrs* item = first; item != nullptr && !found; item = item->ifa_next) {
        const bool isUp = (item->ifa_flags & IFF_UP) != 0 && (item->ifa_flags & IFF_RUNNING) != 0;
        found = isUp && (item->ifa_flags & IFF_LOOPBACK) == 0 && ReachesFurther(item->ifa_addr);
    }
    freeifaddrs(first);
    return found;
}
