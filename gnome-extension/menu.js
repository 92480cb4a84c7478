// Tolvar's section in the shell's keyboard menu, which stock GNOME shows
// where it shows no tray icon: whether the pinned source is kept, and the way
// to Tolvar's window. It writes nothing itself. Every change is a run of the
// tolvar command, the settings file's one writer, and the section shows what
// that file holds, whoever changed it.
//
// Shared by both entry files and made into a script for GNOME 43 and 44 like
// service.js, so it takes the shell's own modules from its caller.
import Gio from 'gi://Gio';
import GLib from 'gi://GLib';

// Which of Tolvar's `languages` serves a system preference such as
// "ja_JP.UTF-8" or "zh_TW", by the rules of Tolvar's own choice (core/l10n).
function languageFor(preference, languages) {
    const tag = preference.split(/[.@]/)[0].replace(/_/g, '-');
    if (languages.includes(tag))
        return tag;
    const [language, ...rest] = tag.split('-');
    if (language !== 'zh')
        return languages.includes(language) ? language : null;
    if (rest.includes('Hant') || rest.includes('Hans'))
        return rest.includes('Hant') ? 'zh-Hant' : 'zh-Hans';
    return rest.some(region => ['TW', 'HK', 'MO'].includes(region)) ? 'zh-Hant' : 'zh-Hans';
}

function readJson(file) {
    return JSON.parse(new TextDecoder().decode(file.load_contents(null)[1]));
}

// config.json as Tolvar decodes it, or null when Tolvar would refuse it.
function decoded(bytes) {
    const config = JSON.parse(new TextDecoder().decode(bytes));
    const optional = value => value === undefined || value === null || typeof value === 'string';
    const valid = typeof config?.enabled === 'boolean' && typeof config.onboardingCompleted === 'boolean' &&
        optional(config.sourceID) && optional(config.language);
    return valid ? config : null;
}

// $XDG_CONFIG_HOME/tolvar, where Tolvar keeps config.json; a relative value does not count.
function configDirectory() {
    const home = GLib.getenv('XDG_CONFIG_HOME');
    const base = home && GLib.path_is_absolute(home) ? home : GLib.build_filenamev([GLib.get_home_dir(), '.config']);
    return Gio.File.new_for_path(base).get_child('tolvar');
}

export class KeyboardMenuSection {
    // Added to the menu of `Main.panel.statusArea.keyboard`; null when the
    // shell has no such menu or the section could not be made. `service`
    // names the sources, `manager` tells when they change, and `extension`
    // holds the texts and the way to the tolvar command.
    static add(Main, PopupMenu, manager, service, extension) {
        const indicator = Main.panel.statusArea.keyboard;
        if (!indicator?.menu)
            return null;
        try {
            return new KeyboardMenuSection(Main, PopupMenu, indicator, manager, service, extension);
        } catch (error) {
            console.warn(`Tolvar: no section in the keyboard menu: ${error.message}`);
            return null;
        }
    }

    constructor(Main, PopupMenu, indicator, manager, service, extension) {
        this._main = Main;
        this._indicator = indicator;
        this._manager = manager;
        this._service = service;
        const folder = Gio.File.new_for_path(extension.path);
        this._texts = readJson(folder.get_child('texts.json'));
        // Installed beside the extension, under the same prefix; else wherever
        // the shell finds it. Without it the section could do nothing.
        const program = folder.resolve_relative_path(extension.metadata['tolvar-program']).get_path();
        this._program = GLib.file_test(program, GLib.FileTest.IS_EXECUTABLE)
            ? program : GLib.find_program_in_path('tolvar');
        if (!this._program)
            throw new Error(`no tolvar command at ${program} or on the PATH`);
        this._cancellable = new Gio.Cancellable();
        this._directory = configDirectory();
        this._file = this._directory.get_child('config.json');
        this._config = null;
        this._reads = 0;
        this._monitor = null;
        this._watched = null;

        this._section = new PopupMenu.PopupMenuSection();
        this._section.actor.name = 'tolvar';
        this._section.addMenuItem(new PopupMenu.PopupSeparatorMenuItem(this._text('app.name')));
        this._keep = new PopupMenu.PopupSwitchMenuItem('', false);
        // The shell also says "toggled" when the state is set from here.
        this._keep.connect('toggled', (_item, on) => {
            if (this._config && on !== this._config.enabled)
                this._setKeeping(on);
        });
        this._pin = new PopupMenu.PopupMenuItem('');
        this._pin.connect('activate', () => this._pinCurrent());
        this._open = new PopupMenu.PopupMenuItem('');
        this._open.connect('activate', () => this._openWindow());
        [this._keep, this._pin, this._open].forEach(item => this._section.addMenuItem(item));
        this._watch();
        this._show();
        // Only now, so that a failure above leaves the shell's menu as it was.
        indicator.menu.addMenuItem(this._section);
        this._signals = ['sources-changed', 'current-source-changed'].map(
            name => manager.connect(name, () => this._show()));
        this._read();
    }

    destroy() {
        this._cancellable.cancel();
        this._monitor?.cancel();
        this._signals.splice(0).forEach(id => this._manager.disconnect(id));
        this._section.destroy();
    }

    // Whether a person sees the section: the shell shows the keyboard
    // indicator only with two sources or more.
    get shown() {
        return this._indicator.visible;
    }

    // The folder once it exists, else its parent until it does: GLib looks
    // for a missing folder only every few seconds.
    _watch() {
        const watched = this._directory.query_exists(null) ? this._directory : this._directory.get_parent();
        if (this._watched?.equal(watched))
            return;
        this._monitor?.cancel();
        this._watched = watched;
        this._monitor = watched.monitor_directory(Gio.FileMonitorFlags.WATCH_MOVES, null);
        // Written whole to a temporary file, then renamed over config.json.
        this._monitor.connect('changed', (_monitor, file, other) => {
            if (![file, other].some(f => f?.equal(this._file) || f?.equal(this._directory)))
                return;
            this._watch();
            this._read();
        });
    }

    // config.json as it is now, to `then`: null when unreadable, the defaults
    // when missing. Read without the lock, as every reader of it: a rename
    // replaces it whole.
    _load(then) {
        this._file.load_contents_async(this._cancellable, (file, result) => {
            let config = null;
            try {
                config = decoded(file.load_contents_finish(result)[1]);
            } catch (error) {
                if (error.matches?.(Gio.IOErrorEnum, Gio.IOErrorEnum.CANCELLED))
                    return;
                if (error.matches?.(Gio.IOErrorEnum, Gio.IOErrorEnum.NOT_FOUND))
                    config = {enabled: false, onboardingCompleted: false};
            }
            then(config);
        });
    }

    _read() {
        const read = ++this._reads;
        this._load(config => {
            if (read !== this._reads)
                return;
            this._config = config;
            this._show();
        });
    }

    // The setting in config.json, else the first of the system's languages
    // that Tolvar speaks, else English.
    _text(key, name = '') {
        const languages = Object.keys(this._texts);
        const chosen = this._config?.language;
        const language = languages.includes(chosen) ? chosen
            : GLib.get_language_names().map(wanted => languageFor(wanted, languages)).find(code => code) ?? 'en';
        return (this._texts[language][key] ?? this._texts.en[key]).replace('%1', () => name);
    }

    _show() {
        const sources = this._service.GetSources();
        const nameOf = id => sources.find(([sourceId]) => sourceId === id)?.[1] ?? id;
        const pinned = this._config?.sourceID;
        const current = this._service.GetCurrent();
        this._keep.visible = Boolean(pinned);
        // Nothing can be offered while config.json is unreadable: the window says why.
        this._pin.visible = Boolean(this._config && !pinned && current);
        if (pinned) {
            this._keep.label.text = this._text('menu.keep-source', nameOf(pinned));
            this._keep.setToggleState(this._config.enabled);
        }
        this._pin.label.text = this._text('menu.pin-source', nameOf(current));
        this._open.label.text = this._text('menu.open');
    }

    _setKeeping(on) {
        this._keep.setSensitive(false);
        this._run([on ? 'resume' : 'pause'], () => {
            this._keep.setSensitive(true);
            // A refusal leaves the file as it was, and the switch with it.
            this._read();
        });
    }

    // A switch that fails once the pin is written, say while another one is
    // under way, leaves the source pinned, and keeping it is still wanted.
    _pinCurrent() {
        const id = this._service.GetCurrent();
        this._run(['set', id], () => this._load(config => {
            if (config?.sourceID === id)
                this._run(['resume'], () => {});
        }));
    }

    // A second tolvar hands over to a running one, which then shows its window.
    _openWindow() {
        this._main.overview.hide();
        this._spawn(['gui'], Gio.SubprocessFlags.STDOUT_SILENCE);
    }

    _spawn(argv, flags) {
        try {
            return Gio.Subprocess.new([this._program, ...argv], flags);
        } catch (error) {
            this._main.notifyError(this._text('app.name'), error.message);
            return null;
        }
    }

    // Runs tolvar with `argv`, then `done(succeeded)`; its own words for a
    // failure, in the language it chose, are shown as they are.
    _run(argv, done) {
        const child = this._spawn(argv, Gio.SubprocessFlags.STDOUT_SILENCE | Gio.SubprocessFlags.STDERR_PIPE);
        if (!child) {
            done(false);
            return;
        }
        child.communicate_utf8_async(null, this._cancellable, (_child, result) => {
            let why = '';
            let succeeded = false;
            try {
                why = child.communicate_utf8_finish(result)[2].trim();
                succeeded = child.get_successful();
            } catch (error) {
                if (error.matches?.(Gio.IOErrorEnum, Gio.IOErrorEnum.CANCELLED))
                    return;
                why = error.message;
            }
            if (!succeeded)
                this._main.notifyError(this._text('app.name'), why);
            done(succeeded);
        });
    }
}
