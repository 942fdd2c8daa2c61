"""The simulated VISA library under PyVISA. Usage: pyvisa_test.py LIBRARY; 77 where there is no PyVISA."""

import sys
import unittest

try:
    import pyvisa
except ImportError:
    sys.exit(77)

LIBRARY = sys.argv.pop()
NAME = "USB0::0x5A41::0x0200::SIM00001::INSTR"


class UnderPyVisa(unittest.TestCase):
    def setUp(self):
        self.manager = pyvisa.ResourceManager(LIBRARY)
        self.addCleanup(self.manager.close)

    def open(self, **options):
        load = self.manager.open_resource(NAME, **options)
        self.addCleanup(load.close)
        return load

    def test_lists(self):
        self.assertEqual(self.manager.list_resources(), ("ASRL1::INSTR", NAME))
        self.assertEqual(self.manager.list_resources("USB?*"), (NAME,))
        self.assertEqual(self.manager.resource_info(NAME).resource_class, "INSTR")
        self.assertEqual(self.manager.resource_info(NAME).interface_type, pyvisa.constants.InterfaceType.usb)

    def test_asks(self):
        load = self.open()
        self.assertEqual(load.query("*IDN?").strip(), "Ostbrook Instruments,ZAN63200,SIM00001,1.02.3")
        self.assertEqual(load.query_ascii_values(":FETC:CURR?"), [0.0])
        self.assertEqual(load.serial_number, "SIM00001")
        self.assertEqual((load.manufacturer_id, load.model_code), (0x5A41, 0x0200))

    def test_reads_blocks(self):
        load = self.open()
        picture = load.query_binary_values(":DISP:COL?", datatype="B", container=bytes)
        self.assertEqual((len(picture), picture[:2]), (230454, b"BM"))
        load.write_binary_values(":MEM:FILE:PRES ", b"p" * 892, datatype="B")
        self.assertEqual(load.query_binary_values(":MEM:FILE:PRES?", datatype="B", container=bytes), b"p" * 892)

    def test_sets_attributes(self):
        load = self.open(timeout=50, read_termination="\n", write_termination="\n", chunk_size=1024)
        self.assertEqual(load.timeout, 50)
        self.assertEqual(load.query(":CHAN?"), "1")
        with self.assertRaises(pyvisa.VisaIOError) as late:
            load.read()
        self.assertEqual(late.exception.error_code, pyvisa.constants.StatusCode.error_timeout)

    def test_clears_polls_and_locks(self):
        load = self.open()
        load.write(":CHAN?")
        self.assertEqual(load.stb & 0x10, 0x10)
        load.clear()
        self.assertEqual(load.stb & 0x10, 0)
        with load.lock_context():
            other = self.open()
            with self.assertRaises(pyvisa.VisaIOError):
                other.write(":CHAN?")
        self.assertEqual(other.query(":CHAN?").strip(), "1")

    def test_says_what_is_wrong(self):
        with self.assertRaises(pyvisa.VisaIOError) as missing:
            self.manager.open_resource("USB0::1::2::NOBODY::INSTR")
        self.assertEqual(missing.exception.error_code, pyvisa.constants.StatusCode.error_resource_not_found)
        text, _ = self.manager.visalib.status_description(self.manager.session, missing.exception.error_code)
        self.assertIn("resource", text)


if __name__ == "__main__":
    unittest.main()
