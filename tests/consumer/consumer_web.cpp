// SPDX-License-Identifier: MIT
#include <KXFoundation/KXFoundationVersion.h>
#include <KXFoundation/Platform/Web/WebViewConfiguration.h>

#include <cstdio>

int main()
{
    kx::UserContentController controller;
    controller.addUserScript({QStringLiteral("void 0"), kx::UserScript::InjectionTime::DocumentStart, false});
    std::printf("%s\n", reinterpret_cast<const char *>(KXFoundationVersionString));
    return controller.userScripts().size() == 1 ? 0 : 1;
}
