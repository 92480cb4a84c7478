// GNOME Shell 45 and later load extensions as ES modules.
import * as Keyboard from 'resource:///org/gnome/shell/ui/status/keyboard.js';
import * as KeyboardManager from 'resource:///org/gnome/shell/misc/keyboardManager.js';
import {Extension} from 'resource:///org/gnome/shell/extensions/extension.js';

import {InputSourcesService} from './service.js';

export default class TolvarExtension extends Extension {
    enable() {
        this._service = new InputSourcesService(Keyboard.getInputSourceManager(),
            KeyboardManager.getKeyboardManager());
    }

    // Also after an enable() that threw, which left nothing to undo.
    disable() {
        this._service?.destroy();
        this._service = null;
    }
}
