// What setting the X keyboard layout costs per switch, two ways: spawning
// setxkbmap as IBus's tools do (what the IBus backend does, with its read-back),
// and the same XKB requests made in-process through libxkbfile. Run it with
// bench/run-x11-layout, which gives it a virtual X display.
#include "platform/linux/x11/X11Layout.h"

#include <QProcess>

#include <X11/XKBlib.h>
#include <X11/extensions/XKBrules.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

void report(const char *name, int rounds, const std::function<bool(int)> &once)
{
    std::vector<double> ms;
    int failures = 0;
    for (int i = 0; i < rounds; ++i) {
        const Clock::time_point start = Clock::now();
        failures += once(i) ? 0 : 1;
        ms.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
    }
    std::sort(ms.begin(), ms.end());
    std::printf("%-44s %5d rounds  median %7.2f ms  p95 %7.2f ms  max %7.2f ms  failures %d\n", name, rounds,
                ms[ms.size() / 2], ms[ms.size() * 95 / 100], ms.back(), failures);
}

// setxkbmap's own steps: the server's rule names, the components the rules
// give for the new layout, the keymap compiled and loaded by the server, and
// the names written back to the root window.
bool setInProcess(Display *display, XkbRF_RulesPtr cachedRules, const char *layout)
{
    char *rulesFile = nullptr;
    XkbRF_VarDefsRec defs = {};
    if (!XkbRF_GetNamesProp(display, &rulesFile, &defs) || !rulesFile)
        return false;
    char path[512];
    std::snprintf(path, sizeof path, "/usr/share/X11/xkb/rules/%s", rulesFile);
    XkbRF_RulesPtr rules = cachedRules ? cachedRules : XkbRF_Load(path, const_cast<char *>("C"), True, True);
    if (!rules)
        return false;
    defs.layout = const_cast<char *>(layout);
    defs.variant = nullptr;
    XkbComponentNamesRec names = {};
    XkbRF_GetComponents(rules, &defs, &names);
    XkbDescPtr keymap = XkbGetKeyboardByName(display, XkbUseCoreKbd, &names, XkbGBN_AllComponentsMask,
                                             XkbGBN_AllComponentsMask & ~XkbGBN_GeometryMask, True);
    const bool ok = keymap && XkbRF_SetNamesProp(display, rulesFile, &defs);
    if (keymap)
        XkbFreeKeyboard(keymap, XkbAllComponentsMask, True);
    if (!cachedRules)
        XkbRF_Free(rules, True);
    XSync(display, False);
    return ok;
}

} // namespace

int main()
{
    Display *display = XOpenDisplay(nullptr);
    if (!display) {
        std::fprintf(stderr, "No X display: run this through bench/run-x11-layout.\n");
        return 1;
    }
    const char *layouts[] = {"de", "us"};
    const int rounds = 100;
    report("setxkbmap -layout (spawned)", rounds, [&](int i) {
        return X11Layout::setArguments({QLatin1String(layouts[i % 2]), {}, {}}).has_value()
               && QProcess::execute(QStringLiteral("setxkbmap"),
                                    *X11Layout::setArguments({QLatin1String(layouts[i % 2]), {}, {}}))
                      == 0;
    });
    report("_XKB_RULES_NAMES read (xcb)", rounds, [](int) { return X11Layout::current().has_value(); });
    report("X11Layout::apply (set + read back)", rounds, [&](int i) {
        return X11Layout::apply({QLatin1String(layouts[i % 2]), {}, {}});
    });
    report("libxkbfile in-process, rules read each time", rounds,
           [&](int i) { return setInProcess(display, nullptr, layouts[i % 2]); });
    XkbRF_RulesPtr rules =
        XkbRF_Load(const_cast<char *>("/usr/share/X11/xkb/rules/evdev"), const_cast<char *>("C"), True, True);
    report("libxkbfile in-process, rules kept", rounds,
           [&](int i) { return setInProcess(display, rules, layouts[i % 2]); });
    std::printf("layout at the end: %s\n", qPrintable(X11Layout::current().value_or(X11Layout::Names()).layout));
    XCloseDisplay(display);
    return 0;
}
