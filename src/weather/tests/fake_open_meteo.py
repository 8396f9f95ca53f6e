#!/usr/bin/env python3
"""A stand-in for Open-Meteo's geocoding and forecast endpoints on 127.0.0.1.

Answers follow the public documentation of /v1/search and /v1/forecast (with
timeformat=unixtime): `results` arrays with admin1, country_code, population and
timezone; forecasts with utc_offset_seconds, current, and hourly/daily parallel arrays.
Prints the port on the first line of stdout, then serves until killed. With --log FILE,
every request target is appended to FILE, one per line.
"""
import argparse
import json
import math
import sys
import time
import urllib.parse
from datetime import datetime, timedelta, timezone
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from zoneinfo import ZoneInfo

PLACES = [
    dict(id=2988507, names={"en": "Paris", "fr": "Paris", "ja": "パリ"}, latitude=48.85341, longitude=2.3488,
         country_code="FR", country="France", admin1="Île-de-France", population=2138551, timezone="Europe/Paris"),
    dict(id=4717560, names={"en": "Paris"}, latitude=33.66094, longitude=-95.55551, country_code="US",
         country="United States", admin1="Texas", population=24171, timezone="America/Chicago"),
    dict(id=1581130, names={"en": "Hanoi", "vi": "Hà Nội", "fr": "Hanoï"}, latitude=21.0245, longitude=105.84117,
         country_code="VN", country="Vietnam", admin1="Hanoi", population=8053663, timezone="Asia/Bangkok"),
    dict(id=1850147, names={"en": "Tokyo", "ja": "東京", "zh": "东京"}, latitude=35.6895, longitude=139.69171,
         country_code="JP", country="Japan", admin1="Tokyo", population=9733276, timezone="Asia/Tokyo"),
    dict(id=524901, names={"en": "Moscow", "ru": "Москва"}, latitude=55.75222, longitude=37.61556,
         country_code="RU", country="Russia", admin1="Moscow", population=10381222, timezone="Europe/Moscow"),
    dict(id=1835848, names={"en": "Seoul", "ko": "서울"}, latitude=37.566, longitude=126.9784,
         country_code="KR", country="South Korea", admin1="Seoul", population=10349312, timezone="Asia/Seoul"),
    dict(id=3448439, names={"en": "São Paulo", "pt": "São Paulo"}, latitude=-23.5475, longitude=-46.63611,
         country_code="BR", country="Brazil", admin1="São Paulo", population=10021295, timezone="America/Sao_Paulo"),
    dict(id=3413829, names={"en": "Reykjavík", "is": "Reykjavík"}, latitude=64.13548, longitude=-21.89541,
         country_code="IS", country="Iceland", admin1="Capital Region", population=118918,
         timezone="Atlantic/Reykjavik"),
    dict(id=2193733, names={"en": "Auckland"}, latitude=-36.84853, longitude=174.76349, country_code="NZ",
         country="New Zealand", admin1="Auckland", population=417910, timezone="Pacific/Auckland"),
    dict(id=2950159, names={"en": "Berlin", "de": "Berlin"}, latitude=52.52437, longitude=13.41053,
         country_code="DE", country="Germany", admin1="Land Berlin", population=3426354, timezone="Europe/Berlin"),
]


def matches(place, query):
    q = query.casefold().rstrip("市")
    return any(n.casefold().startswith(q) for n in place["names"].values()) if q else False


def search(params):
    query = params.get("name", [""])[0]
    language = params.get("language", ["en"])[0]
    count = int(params.get("count", ["10"])[0])
    hits = []
    for p in PLACES:
        if not matches(p, query):
            continue
        hit = {k: v for k, v in p.items() if k != "names"}
        hit["name"] = p["names"].get(language, p["names"]["en"])
        hit["elevation"] = 35.0
        hit["feature_code"] = "PPLC"
        hits.append(hit)
    body = {"generationtime_ms": 0.5}
    if hits:
        body["results"] = hits[:count]
    return body


def nearest_zone(lat, lon):
    best = min(PLACES, key=lambda p: (p["latitude"] - lat) ** 2 + (p["longitude"] - lon) ** 2)
    return best["timezone"]


def forecast(params):
    lat = float(params["latitude"][0])
    lon = float(params["longitude"][0])
    zone_name = params.get("timezone", ["auto"])[0]
    if zone_name in ("auto", ""):
        zone_name = nearest_zone(lat, lon)
    zone = ZoneInfo(zone_name)
    now = int(time.time())
    current_time = now - now % 900
    first_hour = now - now % 3600 - 3600 * int(params.get("past_hours", ["0"])[0])
    hours = int(params.get("forecast_hours", ["36"])[0]) + int(params.get("past_hours", ["0"])[0])
    local_now = datetime.fromtimestamp(now, zone)
    offset = int(local_now.utcoffset().total_seconds())
    seed = int(abs(lat * 100 + lon * 10))
    codes = [0, 1, 2, 3, 45, 61, 63, 80, 71, 95]

    def is_day(t):
        h = datetime.fromtimestamp(t, zone).hour
        return 1 if 6 <= h < 18 else 0

    hourly = {k: [] for k in ["time", "temperature_2m", "apparent_temperature", "relative_humidity_2m",
                              "weather_code", "is_day", "precipitation_probability", "cloud_cover",
                              "wind_speed_10m", "wind_direction_10m"]}
    for i in range(hours):
        t = first_hour + i * 3600
        temp = round(12 + 6 * math.sin((t / 3600 + seed) / 24 * 2 * math.pi), 1)
        hourly["time"].append(t)
        hourly["temperature_2m"].append(temp)
        hourly["apparent_temperature"].append(round(temp - 2.1, 1))
        hourly["relative_humidity_2m"].append(70 + (i % 20))
        hourly["weather_code"].append(codes[(seed + i // 6) % len(codes)])
        hourly["is_day"].append(is_day(t))
        hourly["precipitation_probability"].append((i * 7) % 100)
        hourly["cloud_cover"].append((seed + i * 13) % 101)
        hourly["wind_speed_10m"].append(round(8 + (i % 9) * 1.3, 1))
        hourly["wind_direction_10m"].append((seed + i * 20) % 360)

    days = int(params.get("forecast_days", ["7"])[0])
    midnight = local_now.replace(hour=0, minute=0, second=0, microsecond=0)
    daily = {k: [] for k in ["time", "weather_code", "temperature_2m_max", "temperature_2m_min", "sunrise",
                             "sunset", "precipitation_probability_max"]}
    for d in range(days):
        day = (midnight + timedelta(days=d)).replace(tzinfo=None)
        start = int(day.replace(tzinfo=zone).timestamp())
        daily["time"].append(start)
        daily["weather_code"].append(codes[(seed + d) % len(codes)])
        daily["temperature_2m_max"].append(round(15 + d * 0.5, 1))
        daily["temperature_2m_min"].append(round(5 + d * 0.3, 1))
        daily["sunrise"].append(int(day.replace(hour=7, minute=12, tzinfo=zone).timestamp()))
        daily["sunset"].append(int(day.replace(hour=16, minute=58, tzinfo=zone).timestamp()))
        daily["precipitation_probability_max"].append((d * 17) % 100)

    current = {"time": current_time, "interval": 900}
    idx = max(0, min(hours - 1, (current_time - first_hour) // 3600))
    current.update({
        "temperature_2m": hourly["temperature_2m"][idx],
        "apparent_temperature": hourly["apparent_temperature"][idx],
        "relative_humidity_2m": hourly["relative_humidity_2m"][idx],
        "weather_code": hourly["weather_code"][idx],
        "is_day": is_day(current_time),
        "wind_speed_10m": hourly["wind_speed_10m"][idx],
        "wind_direction_10m": hourly["wind_direction_10m"][idx],
        "precipitation": 0.2,
        "cloud_cover": hourly["cloud_cover"][idx],
    })
    return {
        "latitude": round(lat, 2), "longitude": round(lon, 2), "generationtime_ms": 0.09,
        "utc_offset_seconds": offset, "timezone": zone_name,
        "timezone_abbreviation": local_now.tzname(), "elevation": 35.0,
        "current_units": {"time": "unixtime", "interval": "seconds", "temperature_2m": "°C"},
        "current": current,
        "hourly_units": {"time": "unixtime", "temperature_2m": "°C"},
        "hourly": hourly,
        "daily_units": {"time": "unixtime", "sunrise": "unixtime", "sunset": "unixtime"},
        "daily": daily,
    }


class Handler(BaseHTTPRequestHandler):
    log_file = None

    def do_GET(self):
        if Handler.log_file:
            with open(Handler.log_file, "a", encoding="utf-8") as f:
                f.write(self.path + "\t" + self.headers.get("User-Agent", "") + "\n")
        url = urllib.parse.urlsplit(self.path)
        params = urllib.parse.parse_qs(url.query)
        try:
            if url.path == "/v1/search":
                body = search(params)
            elif url.path == "/v1/forecast":
                body = forecast(params)
            else:
                self.send_error(404)
                return
        except (KeyError, ValueError) as e:
            body = {"error": True, "reason": str(e)}
            data = json.dumps(body).encode()
            self.send_response(400)
            self.send_header("Content-Type", "application/json")
            self.send_header("Content-Length", str(len(data)))
            self.end_headers()
            self.wfile.write(data)
            return
        data = json.dumps(body, ensure_ascii=False).encode("utf-8")
        self.send_response(200)
        self.send_header("Content-Type", "application/json; charset=utf-8")
        self.send_header("Content-Length", str(len(data)))
        self.end_headers()
        self.wfile.write(data)

    def log_message(self, *args):
        pass


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--log")
    args = parser.parse_args()
    Handler.log_file = args.log
    server = ThreadingHTTPServer(("127.0.0.1", 0), Handler)
    print(server.server_address[1], flush=True)
    server.serve_forever()


if __name__ == "__main__":
    sys.exit(main())
