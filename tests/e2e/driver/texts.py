"""What a user reads, in both languages."""
from dataclasses import dataclass


@dataclass(frozen=True)
class Texts:
    locale: str
    check: str
    flash: str
    bundled: str
    choose: str
    file_name: str
    open: str
    confirm: str
    confirm_text: str
    confirm_ok: str
    cancel: str
    unknown: str
    checking: str
    ready: str
    failed: str
    op_ready: str
    op_checking: str
    op_device_ready: str
    op_check_failed: str
    op_flashing: str
    op_erase: str
    op_write: str
    op_done: str
    op_error: str
    done: str
    flash_failed: str
    no_firmware: str
    missing_firmware: str
    invalid: str
    log: str
    started: str
    selected: str
    exited: str
    helper_missing: str
    helper_failed: str
    edit: str
    copy: str
    select_all: str
    quit: str


EN = Texts(
    locale="en_US.UTF-8", check="Check", flash="Flash OS", bundled="Bundled", choose="Choose…",
    file_name="File name:", open="Open",
    confirm="Flash the OS to the MPC4000?",
    confirm_text="Flash memory is erased before writing. Do not power off the MPC4000 or "
                 "unplug USB until it finishes.",
    confirm_ok="Flash", cancel="Cancel", unknown="MPC4000 not checked",
    checking="Checking MPC4000…", ready="MPC4000 connected", failed="MPC4000 not opened",
    op_ready="Ready", op_checking="Checking the connection", op_device_ready="Device is ready",
    op_check_failed="Check failed", op_flashing="Flashing the MPC4000", op_erase="Erasing flash",
    op_write="Writing OS", op_done="Flashing complete", op_error="Flashing failed",
    done="Flashing complete", flash_failed="Flashing did not complete",
    no_firmware="No firmware selected",
    missing_firmware="No bundled firmware. Choose a .bin file.",
    invalid="This does not look like MPC4000 firmware", log="LOG", started="Oxlade started.",
    selected="Firmware selected: {}", exited="Process exited with code {}.",
    helper_missing="Helper not found: {}", helper_failed="Could not start the helper: {}",
    edit="Edit", copy="Copy", select_all="Select All", quit="Quit Oxlade")

RU = Texts(
    locale="ru_RU.UTF-8", check="Проверить", flash="Прошить OS", bundled="Встроенная",
    choose="Выбрать…", file_name="Имя файла:", open="Открыть", confirm="Прошить OS в MPC4000?",
    confirm_text="Flash-память будет стерта перед записью. Не выключайте MPC4000 и не "
                 "отключайте USB до завершения.",
    confirm_ok="Прошить", cancel="Отмена", unknown="MPC4000 не проверен",
    checking="Проверяю MPC4000…", ready="MPC4000 подключен", failed="MPC4000 не открыт",
    op_ready="Готово", op_checking="Проверка подключения", op_device_ready="Устройство готово",
    op_check_failed="Проверка не удалась", op_flashing="Прошивка MPC4000",
    op_erase="Стирание flash", op_write="Запись OS", op_done="Прошивка завершена",
    op_error="Ошибка прошивки", done="Прошивка завершена",
    flash_failed="Прошивка не завершилась", no_firmware="Прошивка не выбрана",
    missing_firmware="Встроенной прошивки нет. Выберите .bin файл.",
    invalid="Это не похоже на прошивку MPC4000", log="ЖУРНАЛ", started="Oxlade запущен.",
    selected="Выбрана прошивка: {}", exited="Процесс завершился с кодом {}.",
    helper_missing="Не найден helper: {}", helper_failed="Не удалось запустить helper: {}",
    edit="Правка", copy="Скопировать", select_all="Выбрать все", quit="Завершить Oxlade")
