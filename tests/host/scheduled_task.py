#!/usr/bin/env python3
"""Reads the task for Windows' Task Scheduler as an XML parser does, and checks what it promises.

    scheduled_task.py FILE
"""

import sys
import unittest
import xml.etree.ElementTree

SPACE = "{http://schemas.microsoft.com/windows/2004/02/mit/task}"
TASK = sys.argv.pop()


class ScheduledTask(unittest.TestCase):
    def setUp(self):
        self.root = xml.etree.ElementTree.parse(TASK).getroot()

    def text(self, path):
        found = self.root.findall("/".join(SPACE + name for name in path.split("/")))
        self.assertEqual(len(found), 1, path)
        return found[0].text

    def test_is_a_task_in_the_scheduler_s_namespace(self):
        self.assertEqual(self.root.tag, SPACE + "Task")
        self.assertTrue(all(element.tag.startswith(SPACE) for element in self.root.iter()))

    def test_its_parts_stand_in_the_order_of_the_schema(self):
        parts = [element.tag[len(SPACE) :] for element in self.root]
        self.assertEqual(parts, ["RegistrationInfo", "Triggers", "Principals", "Settings", "Actions"])

    def test_runs_every_hour_without_end(self):
        self.assertEqual(self.text("Triggers/TimeTrigger/Repetition/Interval"), "PT1H")
        self.assertEqual(self.root.findall(f".//{SPACE}EndBoundary"), [])
        self.assertEqual(self.root.findall(f".//{SPACE}Duration"), [])

    def test_runs_on_battery_as_well_and_later_where_the_machine_slept(self):
        self.assertEqual(self.text("Settings/DisallowStartIfOnBatteries"), "false")
        self.assertEqual(self.text("Settings/StopIfGoingOnBatteries"), "false")
        self.assertEqual(self.text("Settings/StartWhenAvailable"), "true")
        self.assertEqual(self.text("Settings/WakeToRun"), "false")

    def test_runs_once_at_a_time(self):
        self.assertEqual(self.text("Settings/MultipleInstancesPolicy"), "IgnoreNew")

    def test_has_longer_than_a_collection_can_take_and_not_for_ever(self):
        self.assertEqual(self.text("Settings/ExecutionTimeLimit"), "PT15M")

    def test_has_the_least_rights(self):
        self.assertEqual(self.text("Principals/Principal/UserId"), "S-1-5-19")
        self.assertEqual(self.text("Principals/Principal/RunLevel"), "LeastPrivilege")
        context = self.root.find(SPACE + "Actions").get("Context")
        self.assertEqual(self.root.find(f"{SPACE}Principals/{SPACE}Principal").get("id"), context)


if __name__ == "__main__":
    unittest.main()
