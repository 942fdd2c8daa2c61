"""The operating modes, as the panel's table has them."""

from enum import Enum

from ._lumodevice import MODES

__all__ = ["Mode"]

Mode = Enum(
    "Mode",
    [(caption.upper().replace("-", "_"), command.split()[1]) for caption, command, _, _ in MODES],
)
Mode.__doc__ = "The operating modes. The value is the word that the load has for it."
