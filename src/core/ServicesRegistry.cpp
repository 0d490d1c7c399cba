#include <stdexcept>

#include "core/Services.h"

namespace rk31 {

namespace {

Services& registry() {
    static Services services;
    return services;
}

template <typename T>
T& require(T* seam, const char* name) {
    if (seam == nullptr) {
        throw std::logic_error(std::string("service not installed: ") + name);
    }
    return *seam;
}

}  // namespace

Prompts& AppPrompts() {
    return require(registry().prompts, "prompts");
}
Pause& AppPause() {
    return require(registry().pause, "pause");
}
PortProber& AppPorts() {
    return require(registry().ports, "ports");
}

void InstallServices(const Services& services) {
    registry() = services;
}
const Services& InstalledServices() {
    return registry();
}

ScopedServices::ScopedServices(const Services& services) : m_previous(registry()) {
    registry() = services;
}

ScopedServices::~ScopedServices() {
    registry() = m_previous;
}

}  // namespace rk31
