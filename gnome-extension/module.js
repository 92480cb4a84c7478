// GNOME Shell 45 and later load extensions as ES modules.
import * as Keyboard from 'resource:///org/gnome/shell/ui/status/keyboard.js';
import * as KeyboardManager from 'resource:///org/gnome/shell/misc/keyboardManager.js';
import * as Main from 'resource:///org/gnome/shell/ui/main.js';
import * as PopupMenu from 'resource:///org/gnome/shell/ui/popupMenu.js';
import {Extension} from 'resource:///org/gnome/shell/extensions/extension.js';

import {InputSourcesService} from './service.js';
import {KeyboardMenuSection} from './menu.js';

export default class TolvarExtension extends Extension {
    enable() {
        const manager = Keyboard.getInputSourceManager();
        this._service = new InputSourcesService(manager, KeyboardManager.getKeyboardManager());
        this._service.menu = KeyboardMenuSection.add(Main, PopupMenu, manager, this._service, this);
    }

    // Also after an enable() that threw, which left nothing to undo.
    disable() {
        this._service?.menu?.destroy();
        this._service?.destroy();
        this._service = null;
    }
}
