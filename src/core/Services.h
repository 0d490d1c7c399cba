#pragma once

namespace rk31 {

class Prompts;
class Pause;
class PortProber;

// The side-effect seams a window uses. The program installs the Qt implementations at start;
// a test installs scripted ones for its lifetime with ScopedServices.
struct Services {
    Prompts* prompts = nullptr;
    Pause* pause = nullptr;
    PortProber* ports = nullptr;
};

// The installed seams; throws std::logic_error when a seam is used before being installed.
Prompts& AppPrompts();
Pause& AppPause();
PortProber& AppPorts();

void InstallServices(const Services& services);
const Services& InstalledServices();

class ScopedServices {
  public:
    explicit ScopedServices(const Services& services);
    ~ScopedServices();
    ScopedServices(const ScopedServices&) = delete;
    ScopedServices& operator=(const ScopedServices&) = delete;

  private:
    Services m_previous;
};

}  // namespace rk31
