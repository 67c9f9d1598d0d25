// SPDX-FileCopyrightText: 2026 Tallowmere developers
// SPDX-License-Identifier: MIT
#include "imaging/codecs/containers/ContainerModule.h"

#include <dlfcn.h>

#include <filesystem>
#include <system_error>

namespace tallowmere {

const Codec *ContainerModule::codec(MediaFamily family) const
{
    // dlopen counts and locks by itself: a second call finds the module in place. It is never closed, because
    // what its codecs handed out may live on.
    void *module = dlopen(m_path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!module)
        return nullptr;
    auto *function = reinterpret_cast<ContainerCodecFunction *>(dlsym(module, kContainerCodecFunction));
    return function ? function(static_cast<int>(family)) : nullptr;
}

const ContainerModule &ContainerModule::installed()
{
    static const ContainerModule module([] {
        std::error_code error;
        const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
        // Relative to the program, so that it is found in a build folder, below /usr and in a bundle alike.
        const auto path = program.parent_path() / TALLOWMERE_MODULE_FOLDER / "containers.so";
        return path.lexically_normal().string();
    }());
    return module;
}

} // namespace tallowmere
