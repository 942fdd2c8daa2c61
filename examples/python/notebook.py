# %% [markdown]
# # A morning at the bench
# Editors that know "# %%" run this file cell by cell; so does `jupytext --to notebook notebook.py`.
# Everything here runs on the simulated load.

# %%
import lumodevice
from lumodevice import Mode

load = lumodevice.connect(virtual_time=True)
load.identity

# %% [markdown]
# What is there?

# %%
for channel in load.channels:
    print(channel.name, f"{channel.voltage:.3f} V", channel.mode.name)

# %% [markdown]
# A setting, its unit and its range.

# %%
channel = load.channel(3)
channel.mode = Mode.CR_LOW
settings = channel.setpoints
print({name: (settings[name], settings.unit(name), settings.range(name)) for name in settings})

# %% [markdown]
# The load on 10 ohms for a minute, as rows; `pandas.DataFrame(rows)` has the names as columns.

# %%
settings["A"] = 10
channel.on()
rows = list(load.readings(5, channels=[3], count=12))
channel.off()
print(rows[0]._fields)
print(f"{sum(row.power for row in rows) / len(rows):.2f} W on average")

# %% [markdown]
# What the load refuses is an exception, with the load's own number.

# %%
try:
    settings["A"] = 1e9
except lumodevice.InstrumentError as error:
    print("refused:", error.number, error.text)

# %% [markdown]
# The panel itself is there, too: every button and box, by name.

# %%
panel = load.automation
panel["txtInput", 14].text = "12"
panel["cmdSet", 14].click()
print(len(panel.surface()), "controls;", panel["lblInput", 14].caption)

# %%
load.close()
