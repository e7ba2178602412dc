#!/usr/bin/python3 -IS
"""Tells what the statistics must hold, from the logs and the times of the cycles alone.

usage: statistics_model.py FOLDER ZONE LAST DOMAINS NOW...

FOLDER holds the logs with their long-term files, ZONE is a time zone's name, LAST the time up to
which was counted before, DOMAINS the server's own, joined with commas; the cycles run at the times
NOW. Prints the rows of all tables but those of the threats' origin, one a line, sorted. Ends with an
error when two names of a top list have the same count, since their order is open.
"""

import collections
import datetime
import os
import sqlite3
import sys
import zoneinfo

HOUR = 3600
DAY = 86400
SCALES = {"hour": 25, "day": 8, "week": 9, "month": 7}
NOBODY = ("--", 0)


class Calendar:
    def __init__(self, zone):
        self.zone = zoneinfo.ZoneInfo(zone)

    def start(self, time, scale):
        local = datetime.datetime.fromtimestamp(time, self.zone)
        if scale == "hour":
            return time - local.minute * 60 - local.second
        date = local.date()
        if scale == "week":
            date -= datetime.timedelta(days=date.weekday())
        if scale == "month":
            date = date.replace(day=1)
        return self.midnight(date)

    def end(self, start, scale):
        if scale == "month":
            date = datetime.datetime.fromtimestamp(start, self.zone).date()
            return self.midnight((date + datetime.timedelta(days=31)).replace(day=1))
        return start + {"hour": HOUR, "day": DAY, "week": 7 * DAY}[scale]

    def midnight(self, date):
        return int(datetime.datetime(date.year, date.month, date.day, tzinfo=self.zone).timestamp())


def rows(folder, name, columns):
    found = []
    for file in (f"aggr_{name}_log.db", f"aggr_{name}_log_main.db"):
        path = os.path.join(folder, file)
        if os.path.exists(path):
            with sqlite3.connect(f"file:{path}?mode=ro", uri=True) as log:
                found += log.execute(f"SELECT {columns} FROM {name}_log_table")
    return found


def top(counts):
    first = counts.most_common(6)
    numbers = [number for _, number in first]
    if len(set(numbers)) != len(numbers):
        sys.exit(f"the order of {first} is open")
    return (first + [NOBODY] * 5)[:5]


class Traffic:
    """Events are (time, status, name); tables map keys to values."""

    def __init__(self, calendar, folder):
        self.calendar = calendar
        self.events = [
            (date, status, sender if status in (0, 3) else recipient)
            for date, status, sender, recipient in rows(
                folder, "mail", "date, status, mail_from, mail_to") if status < 4]
        self.events += [(date, 4, src) for date, kind, src in
                        rows(folder, "security", "date, type, src") if kind == "reject"]
        self.counts = {scale: {} for scale in SCALES}
        self.top = {}
        self.usage = {}

    def names(self, start, end, status):
        return collections.Counter(
            name for date, kind, name in self.events if kind == status and start <= date < end)

    def cycle(self, last, now):
        """Gives the new time up to which was counted."""
        first = self.calendar.start(last, "hour")
        hours = -(-(now - first) // HOUR)
        if hours > 12:
            last += (hours - 12) * HOUR
            first += (hours - 12) * HOUR
            hours = 12
        lists = None
        for number in range(hours):
            last = first + number * HOUR
            self.count(last)
            lists = lists or self.lists(last)  # those of the first hour are saved for all
            self.save_lists(last, lists)
        return last

    def count(self, hour):
        day = self.calendar.start(hour, "day")
        for status in range(5):
            for name, number in self.names(day, day + DAY, status).items():
                self.usage[day, status, name] = number
        self.counts["hour"][hour] = [
            sum(self.names(hour, hour + HOUR, status).values()) for status in range(5)]
        for scale, finer in (("day", "hour"), ("week", "day"), ("month", "day")):
            start = self.calendar.start(hour, scale)
            end = self.calendar.end(start, scale)
            parts = [c for time, c in self.counts[finer].items() if start <= time < end]
            # A sum over nothing is no number.
            self.counts[scale][start] = [sum(c) for c in zip(*parts)] if parts else ["NULL"] * 5

    def lists(self, hour):
        found = {("hour", status): top(self.names(hour, hour + HOUR, status))
                 for status in range(5)}
        for scale in ("day", "week", "month"):
            start = self.calendar.start(hour, scale)
            end = self.calendar.end(start, scale)
            for status in range(5):
                counts = collections.Counter()
                for (day, kind, name), number in self.usage.items():
                    if kind == status and start <= day < end:
                        counts[name] += number
                found[scale, status] = top(counts)
        return found

    def save_lists(self, hour, lists):
        for (scale, status), entries in lists.items():
            start = self.calendar.start(hour, scale)
            for rank, entry in enumerate(entries):
                self.top[start, SCALES[scale], status, rank] = entry

    def dump(self):
        for scale, table in self.counts.items():
            for time, counts in table.items():
                yield [f"log_statistic_{scale}", time, *counts]
        for key, entry in self.top.items():
            yield ["log_statistic_top5", *key, *entry]
        for key, number in self.usage.items():
            yield ["log_statistic_daily_usage", *key, number]


class Threats:
    def __init__(self, calendar, folder, domains):
        self.calendar = calendar
        self.domains = domains
        self.events = rows(folder, "security", "date, type, sender, recipient")
        self.tables = collections.defaultdict(dict)

    def inside(self, address):
        return any(address.lower().endswith("@" + domain) for domain in self.domains)

    def mail_class(self, sender, recipient):
        ways = {(False, True): "inbound", (True, False): "outbound"}
        return ways.get((self.inside(sender), self.inside(recipient))) if self.domains else None

    def cycle(self, last):
        since = last - last % HOUR  # hours are those of UTC
        threats = collections.Counter()
        addresses = collections.Counter()
        for date, kind, sender, recipient in self.events:
            way = self.mail_class(sender, recipient)
            if date < since or way is None:
                continue
            hour = date - date % HOUR
            threats[hour, way, kind] += 1
            addresses[hour, way, "recipient", recipient.lower()] += 1
            if way == "inbound" or kind not in ("spam", "content"):
                addresses[hour, way, "sender", sender.lower()] += 1
        self.save("threat_overview", threats, last)
        self.save("blocked_address", addresses, last)

    def save(self, name, counts, last):
        self.tables[name + "_hour"].update(counts)
        days = collections.Counter()
        first = self.calendar.start(last, "day")
        for (hour, *key), number in self.tables[name + "_hour"].items():
            if hour >= first:
                days[(self.calendar.start(hour, "day"), *key)] += number
        self.tables[name + "_day"].update(days)

    def dump(self):
        for name, table in self.tables.items():
            for key, number in table.items():
                yield [name, *key, number]


def main():
    folder, zone, last, domains, *times = sys.argv[1:]
    calendar = Calendar(zone)
    traffic = Traffic(calendar, folder)
    threats = Threats(calendar, folder, [domain for domain in domains.split(",") if domain])
    last = int(last)
    for now in map(int, times):
        threats.cycle(last)
        last = traffic.cycle(last, now)
    lines = ["|".join(map(str, row)) for part in (traffic, threats) for row in part.dump()]
    print("\n".join(sorted(lines)))


main()
