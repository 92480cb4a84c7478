// GNOME Shell 43 and 44 load extensions as scripts.
/* exported init */
const ExtensionUtils = imports.misc.extensionUtils;
const Keyboard = imports.ui.status.keyboard;
const Main = imports.ui.main;
const PopupMenu = imports.ui.popupMenu;
const Me = ExtensionUtils.getCurrentExtension();
const {InputSourcesService} = Me.imports.service;
const {KeyboardMenuSection} = Me.imports.menu;

class TolvarExtension {
    enable() {
        const manager = Keyboard.getInputSourceManager();
        this._service = new InputSourcesService(manager);
        this._service.menu = KeyboardMenuSection.add(Main, PopupMenu, manager, this._service, Me);
    }

    // Also after an enable() that threw, which left nothing to undo.
    disable() {
        this._service?.menu?.destroy();
        this._service?.destroy();
        this._service = null;
    }
}

function init() {
    return new TolvarExtension();
}
