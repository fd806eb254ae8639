"""The texts of the window that tests look for, in both languages."""
from types import SimpleNamespace

_TABLE = {
    "check": ("Check", "Проверить"),
    "flash": ("Flash OS", "Прошить OS"),
    "bundled": ("Bundled", "Встроенная"),
    "choose": ("Choose…", "Выбрать…"),
    "file_name": ("File name:", "Имя файла:"),
    "open": ("Open", "Открыть"),
    "confirm": ("Flash the OS to the MPC4000?", "Прошить OS в MPC4000?"),
    "confirm_text": (
        "Flash memory is erased before writing. Do not power off the MPC4000 or unplug USB "
        "until it finishes.",
        "Flash-память будет стерта перед записью. Не выключайте MPC4000 и не отключайте USB "
        "до завершения."),
    "confirm_ok": ("Flash", "Прошить"),
    "cancel": ("Cancel", "Отмена"),
    "unknown": ("MPC4000 not checked", "MPC4000 не проверен"),
    "checking": ("Checking MPC4000…", "Проверяю MPC4000…"),
    "ready": ("MPC4000 connected", "MPC4000 подключен"),
    "failed": ("MPC4000 not opened", "MPC4000 не открыт"),
    "op_ready": ("Ready", "Готово"),
    "op_checking": ("Checking the connection", "Проверка подключения"),
    "op_device_ready": ("Device is ready", "Устройство готово"),
    "op_check_failed": ("Check failed", "Проверка не удалась"),
    "op_flashing": ("Flashing the MPC4000", "Прошивка MPC4000"),
    "op_erase": ("Erasing flash", "Стирание flash"),
    "op_write": ("Writing OS", "Запись OS"),
    "op_done": ("Flashing complete", "Прошивка завершена"),
    "op_error": ("Flashing failed", "Ошибка прошивки"),
    "done": ("Flashing complete", "Прошивка завершена"),
    "flash_failed": ("Flashing did not complete", "Прошивка не завершилась"),
    "missing_firmware": ("No bundled firmware. Choose a .bin file.",
                         "Встроенной прошивки нет. Выберите .bin файл."),
    "invalid": ("This does not look like MPC4000 firmware", "Это не похоже на прошивку MPC4000"),
    "log": ("LOG", "ЖУРНАЛ"),
    "started": ("Oxlade started.", "Oxlade запущен."),
    "selected": ("Firmware selected: {}", "Выбрана прошивка: {}"),
    "exited": ("Process exited with code {}.", "Процесс завершился с кодом {}."),
    "helper_missing": ("Helper not found: {}", "Не найден helper: {}"),
    "helper_failed": ("Could not start the helper: {}", "Не удалось запустить helper: {}"),
    "edit": ("Edit", "Правка"),
    "copy": ("Copy", "Скопировать"),
    "select_all": ("Select All", "Выбрать все"),
    "quit": ("Quit Oxlade", "Завершить Oxlade"),
    "locale": ("en_US.UTF-8", "ru_RU.UTF-8"),
}

Texts = SimpleNamespace
EN = Texts(**{name: english for name, (english, _) in _TABLE.items()})
RU = Texts(**{name: russian for name, (_, russian) in _TABLE.items()})
