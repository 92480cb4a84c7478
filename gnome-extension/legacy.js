// GNOME Shell 43 and 44 load extensions as scripts.
/* exported init */
const ExtensionUtils = imports.misc.extensionUtils;
const Keyboard = imports.ui.status.keyboard;
const {InputSourcesService} = ExtensionUtils.getCurrentExtension().imports.service;

class TolvarExtension {
    enable() {
        this._service = new InputSourcesService(Keyboard.getInputSourceManager());
    }

    // Also after an enable() that threw, which left nothing to undo.
    disable() {
        this._service?.destroy();
        this._service = null;
    }
}

function init() {
    return new TolvarExtension();
}
