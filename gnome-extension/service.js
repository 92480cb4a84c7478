// Tolvar's view of the shell's input sources, on the session bus. The shell
// keeps the only true record of the current source, and nothing outside it
// can switch: this object reads it, switches it and passes on its changes.
//
// An ES module, loaded as is by GNOME 45 and later. The build turns a copy
// into a script for GNOME 43 and 44 (see CMakeLists.txt), which accepts only
// the import and export forms used here.
import Gio from 'gi://Gio';
import GLib from 'gi://GLib';

const busName = 'app.tolvar.InputSources';
const objectPath = '/app/tolvar/InputSources';
const interfaceXml = `
<node>
  <interface name="app.tolvar.InputSources1">
    <method name="GetSources">
      <!-- id such as "xkb:de" or "ibus:hangul", display name, short label, type -->
      <arg type="a(ssss)" direction="out" name="sources"/>
    </method>
    <method name="GetCurrent">
      <arg type="s" direction="out" name="id"/>
    </method>
    <method name="Activate">
      <arg type="s" direction="in" name="id"/>
      <arg type="b" direction="out" name="activated"/>
    </method>
    <signal name="CurrentChanged">
      <arg type="s" name="id"/>
    </signal>
    <signal name="SourcesChanged"/>
    <!-- From GNOME 50 a remote desktop client may set the keymap (external),
         and may lock it; a shell before 50 answers false, false. -->
    <method name="GetKeymap">
      <arg type="b" direction="out" name="external"/>
      <arg type="b" direction="out" name="locked"/>
    </method>
    <signal name="KeymapChanged">
      <arg type="b" name="external"/>
      <arg type="b" name="locked"/>
    </signal>
    <!-- Whether the shell's keyboard menu shows Tolvar's section, which
         stands in for a tray icon where the shell shows none. -->
    <method name="GetMenuShown">
      <arg type="b" direction="out" name="shown"/>
    </method>
  </interface>
</node>`;

function sourceId(source) {
    return source ? `${source.type}:${source.id}` : '';
}

// The shell's keyboard manager where it can tell of a keymap it did not set
// (GNOME 50 and later); none before.
function keymapWatcher(keyboard) {
    return typeof keyboard?.isExternal === 'function' && typeof keyboard.isLocked === 'function' ? keyboard : null;
}

export class InputSourcesService {
    // Undoes its own start when that fails, so the caller holds either a
    // running service or nothing.
    constructor(manager, keyboard = null) {
        this._manager = manager;
        this._keyboard = keymapWatcher(keyboard);
        this._current = sourceId(manager.currentSource);
        this._keymap = this.GetKeymap();
        this._signals = [];
        this._keymapSignal = 0;
        this._nameId = 0;
        // Tolvar's section in the keyboard menu, once the caller has added one.
        this.menu = null;
        this._object = Gio.DBusExportedObject.wrapJSObject(interfaceXml, this);
        try {
            this._object.export(Gio.DBus.session, objectPath);
            this._signals.push(manager.connect('current-source-changed', () => this._currentChanged()));
            this._signals.push(manager.connect('sources-changed', () => this._object.emit_signal('SourcesChanged', null)));
            this._keymapSignal = this._keyboard?.connect('keymap-changed', () => this._keymapChanged()) ?? 0;
            // Owned last, so that whoever sees the name finds the object answering.
            // Asked for with no flags, a name held elsewhere comes to this one
            // when it is let go.
            this._nameId = Gio.bus_own_name_on_connection(Gio.DBus.session, busName,
                Gio.BusNameOwnerFlags.NONE, () => this._nameAcquired(), () => this._nameLost());
        } catch (error) {
            this.destroy();
            throw error;
        }
    }

    destroy() {
        if (this._nameId)
            Gio.bus_unown_name(this._nameId);
        this._nameId = 0;
        this._signals.splice(0).forEach(id => this._manager.disconnect(id));
        if (this._keymapSignal)
            this._keyboard.disconnect(this._keymapSignal);
        this._keymapSignal = 0;
        this._unexport();
    }

    _unexport() {
        if (this._object.has_connection(Gio.DBus.session))
            this._object.unexport();
    }

    // Calls to the name go to its new owner; the object under the shell's own
    // address would only answer whoever still remembers that address.
    _nameLost() {
        this._unexport();
        console.warn(`Tolvar: ${busName} is taken elsewhere on the session bus; answering again once it is free`);
    }

    _nameAcquired() {
        if (this._object.has_connection(Gio.DBus.session))
            return;
        try {
            this._object.export(Gio.DBus.session, objectPath);
            console.log(`Tolvar: ${busName} is free again and answers`);
        } catch (error) {
            console.warn(`Tolvar: cannot answer on ${busName}: ${error.message}`);
        }
    }

    _sources() {
        const sources = this._manager.inputSources;
        return Object.keys(sources).sort((a, b) => a - b).map(index => sources[index]);
    }

    _currentChanged() {
        const current = sourceId(this._manager.currentSource);
        // The shell also reports property updates of the same source.
        if (current === this._current)
            return;
        this._current = current;
        this._object.emit_signal('CurrentChanged', new GLib.Variant('(s)', [current]));
    }

    _keymapChanged() {
        const keymap = this.GetKeymap();
        if (keymap.every((held, i) => held === this._keymap[i]))
            return;
        this._keymap = keymap;
        this._object.emit_signal('KeymapChanged', new GLib.Variant('(bb)', keymap));
    }

    GetSources() {
        return this._sources().map(s => [sourceId(s), s.displayName, s.shortName, s.type]);
    }

    GetCurrent() {
        return sourceId(this._manager.currentSource);
    }

    GetKeymap() {
        return this._keyboard ? [this._keyboard.isExternal(), this._keyboard.isLocked()] : [false, false];
    }

    GetMenuShown() {
        return this.menu?.shown ?? false;
    }

    Activate(id) {
        // Activating a source takes the keymap back from the remote client.
        if (this.GetKeymap().some(held => held))
            return false;
        const source = this._sources().find(s => sourceId(s) === id);
        // As if the user picked it, so the shell keeps it across its own reloads.
        source?.activate(true);
        return source !== undefined;
    }
}
